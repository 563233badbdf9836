#include "ServicePresence.h"

namespace platform
{

bool ServicePresence::appeared(const ServiceName &service, Place place)
{
    auto &places = m_places[service];
    return places.insert(place).second && places.size() == 1;
}

bool ServicePresence::vanished(const ServiceName &service, Place place)
{
    const auto known = m_places.find(service);
    if (known == m_places.end())
        return false;
    known->second.erase(place);
    if (!known->second.empty())
        return false;
    m_places.erase(known);
    return true;
}

} // namespace platform
