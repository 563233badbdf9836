#include "FakeSerialRegistry.h"

using namespace platform;

std::vector<SerialService> FakeSerialRegistry::addMatchingNotification(SerialRegistryClient &client)
{
    m_clients.push_back(&client);
    return m_present;
}

SerialRegistry::Handle FakeSerialRegistry::addInterestNotification(const SerialService &service,
                                                                   SerialRegistryClient &client)
{
    m_interests.push_back({++m_lastHandle, service, &client});
    return m_lastHandle;
}

void FakeSerialRegistry::releaseNotification(Handle handle)
{
    released.push_back(handle);
    std::erase_if(m_interests, [handle](const Interest &interest) { return interest.handle == handle; });
}

void FakeSerialRegistry::removeClient(SerialRegistryClient &client)
{
    std::erase(m_clients, &client);
    std::erase_if(m_interests, [&client](const Interest &interest) { return interest.client == &client; });
}

void FakeSerialRegistry::plugIn(const QString &path, const QString &advice)
{
    const SerialService service{.key = QString::number(++m_plugged), .dialInDevice = path, .advice = advice};
    m_present.push_back(service);
    for (SerialRegistryClient *client : std::vector(m_clients))
        client->serialServicesMatched({service});
}

void FakeSerialRegistry::plugIn(const QStringList &paths)
{
    std::vector<SerialService> services;
    for (const QString &path : paths)
        services.push_back({.key = QString::number(++m_plugged), .dialInDevice = path, .advice = {}});
    m_present.insert(m_present.end(), services.begin(), services.end());
    for (SerialRegistryClient *client : std::vector(m_clients))
        client->serialServicesMatched(services);
}

void FakeSerialRegistry::unplug(const QString &path)
{
    sendMessage(path, SerialRegistryClient::serviceIsTerminated);
    std::erase_if(m_present, [&](const SerialService &service) { return service.dialInDevice == path; });
    std::erase_if(m_interests, [&](const Interest &interest) { return interest.service.dialInDevice == path; });
}

void FakeSerialRegistry::sendMessage(const QString &path, quint32 messageType)
{
    for (const Interest &interest : std::vector(m_interests))
        if (interest.service.dialInDevice == path)
            interest.client->serialServiceMessage(interest.service, messageType);
}

QStringList FakeSerialRegistry::interests() const
{
    QStringList paths;
    for (const Interest &interest : m_interests)
        paths.append(interest.service.dialInDevice);
    return paths;
}
