#include "LinuxSerialRegistry.h"

#include "LinkedSerialDevices.h"
#include "UdevSerialDevices.h"

#include <algorithm>

namespace platform
{

namespace
{
bool holds(const std::vector<SerialService> &services, const SerialService &service)
{
    return std::any_of(services.begin(), services.end(), [&](const SerialService &s) { return s.key == service.key; });
}

std::vector<SerialService> without(const std::vector<SerialService> &services, const std::vector<SerialService> &others)
{
    std::vector<SerialService> rest;
    std::copy_if(services.begin(), services.end(), std::back_inserter(rest),
                 [&](const SerialService &service) { return !holds(others, service); });
    return rest;
}
} // namespace

LinuxSerialRegistry::LinuxSerialRegistry(QString folder)
    : m_folder(std::move(folder))
{
}

LinuxSerialRegistry::~LinuxSerialRegistry() = default;

std::vector<SerialService> LinuxSerialRegistry::addMatchingNotification(SerialRegistryClient &client)
{
    _watch();
    m_clients.push_back(&client);
    return m_present;
}

SerialRegistry::Handle LinuxSerialRegistry::addInterestNotification(const SerialService &service,
                                                                    SerialRegistryClient &client)
{
    m_interests.push_back({++m_lastHandle, service, &client});
    return m_lastHandle;
}

void LinuxSerialRegistry::releaseNotification(Handle handle)
{
    std::erase_if(m_interests, [handle](const Interest &interest) { return interest.handle == handle; });
}

void LinuxSerialRegistry::removeClient(SerialRegistryClient &client)
{
    std::erase(m_clients, &client);
    std::erase_if(m_interests, [&client](const Interest &interest) { return interest.client == &client; });
}

void LinuxSerialRegistry::_watch()
{
    if (!m_sources.empty())
        return;
    _addSource(std::make_unique<UdevSerialDevices>());
    if (!m_folder.isEmpty())
        _addSource(std::make_unique<LinkedSerialDevices>(m_folder));
    m_present = _scan();
}

void LinuxSerialRegistry::_addSource(std::unique_ptr<SerialDeviceSource> source)
{
    source->changed = [this] { _update(); };
    m_sources.push_back(std::move(source));
}

std::vector<SerialService> LinuxSerialRegistry::_scan() const
{
    std::vector<SerialService> services;
    for (const auto &source : m_sources)
        for (SerialService &service : source->present())
            services.push_back(std::move(service));
    return services;
}

/// Clients may register and release while they are told.
void LinuxSerialRegistry::_update()
{
    const std::vector<SerialService> before = std::exchange(m_present, _scan());
    const std::vector<SerialService> added = without(m_present, before);
    for (const SerialService &service : without(before, m_present))
        _tellOfGone(service);
    if (!added.empty())
        _tellOfNew(added);
}

void LinuxSerialRegistry::_tellOfGone(const SerialService &service)
{
    for (const Interest &interest : std::vector(m_interests))
        if (interest.service.key == service.key && _has(interest.handle))
            interest.client->serialServiceMessage(service, SerialRegistryClient::serviceIsTerminated);
    std::erase_if(m_interests, [&](const Interest &interest) { return interest.service.key == service.key; });
}

void LinuxSerialRegistry::_tellOfNew(const std::vector<SerialService> &services)
{
    for (SerialRegistryClient *client : std::vector(m_clients))
        if (std::find(m_clients.begin(), m_clients.end(), client) != m_clients.end())
            client->serialServicesMatched(services);
}

bool LinuxSerialRegistry::_has(Handle handle) const
{
    return std::any_of(m_interests.begin(), m_interests.end(),
                       [handle](const Interest &interest) { return interest.handle == handle; });
}

} // namespace platform
