#include "Lv2UriMap.h"

namespace platform
{

Lv2UriMap::Lv2UriMap()
    : map{this, [](LV2_URID_Map_Handle self, const char *uri) { return static_cast<Lv2UriMap *>(self)->number(uri); }}
    , unmap{this,
            [](LV2_URID_Unmap_Handle self, LV2_URID number) { return static_cast<Lv2UriMap *>(self)->uri(number); }}
{
}

LV2_URID Lv2UriMap::number(const char *uri)
{
    const std::lock_guard lock(m_mutex);
    const auto [entry, isNew] = m_numbers.emplace(uri, static_cast<LV2_URID>(m_uris.size() + 1));
    if (isNew)
        m_uris.push_back(entry->first);
    return entry->second;
}

const char *Lv2UriMap::uri(LV2_URID number)
{
    const std::lock_guard lock(m_mutex);
    return number >= 1 && number <= m_uris.size() ? m_uris[number - 1].c_str() : nullptr;
}

} // namespace platform
