#include "ServiceAnnouncer.h"

#include <QNetworkInterface>

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <avahi-common/thread-watch.h>

#include <memory>

namespace
{
constexpr auto webService = "_http._tcp";
constexpr uint16_t classInternet = 1;
constexpr uint16_t recordPointer = 12;
constexpr uint32_t secondsToLive = 4500;

/// A name as it stands in records: each label behind its length.
QByteArray recordName(const QByteArrayList &labels)
{
    QByteArray name;
    for (const QByteArray &label : labels)
        name += static_cast<char>(label.size()) + label;
    return name + '\0';
}

AvahiIfIndex interfaceOf(const QHostAddress &where)
{
    if (where == QHostAddress::Any)
        return AVAHI_IF_UNSPEC;
    for (const QNetworkInterface &interface : QNetworkInterface::allInterfaces())
        for (const QNetworkAddressEntry &entry : interface.addressEntries())
            if (entry.ip() == where)
                return interface.index();
    return AVAHI_IF_UNSPEC;
}

class PollLock
{
public:
    explicit PollLock(AvahiThreadedPoll *poll)
        : m_poll(poll)
    {
        avahi_threaded_poll_lock(poll);
    }
    ~PollLock() { avahi_threaded_poll_unlock(m_poll); }
    PollLock(const PollLock &) = delete;
    PollLock &operator=(const PollLock &) = delete;

private:
    AvahiThreadedPoll *m_poll;
};
} // namespace

/// All but construction and destruction under the poll's lock, which its own thread holds while it calls.
class ServiceAnnouncer::Private
{
public:
    struct Entry
    {
        Service service;
        AvahiEntryGroup *group = nullptr;
        Private *owner = nullptr;
    };

    explicit Private(ServiceAnnouncer &owner, const QHostAddress &where)
        : q(owner)
        , interface(interfaceOf(where))
        , poll(avahi_threaded_poll_new())
    {
        avahi_threaded_poll_start(poll);
    }

    ~Private()
    {
        avahi_threaded_poll_stop(poll);
        freeClient();
        avahi_threaded_poll_free(poll);
    }

    void makeClient();
    void freeClient();
    void setClientState(AvahiClientState state);
    void registerAll();
    void registerEntry(Entry &entry);
    int fill(const Entry &entry) const;
    int addPointer(const Entry &entry) const;
    void setGroupState(AvahiEntryGroup *group, Entry &entry, AvahiEntryGroupState state);
    void renameEntry(Entry &entry);
    void dropGroups();
    void fail(int error) { Q_EMIT q.failed(QString::fromUtf8(avahi_strerror(error))); }

    ServiceAnnouncer &q;
    AvahiIfIndex interface;
    AvahiThreadedPoll *poll;
    AvahiClient *client = nullptr;
    bool isRunning = false;
    std::vector<std::unique_ptr<Entry>> entries; ///< Where each stands is known to its group.
};

void ServiceAnnouncer::Private::makeClient()
{
    int error = 0;
    const auto callback = [](AvahiClient *made, AvahiClientState state, void *self) {
        static_cast<Private *>(self)->client = made; // it calls before it is returned
        static_cast<Private *>(self)->setClientState(state);
    };
    client = avahi_client_new(avahi_threaded_poll_get(poll), AVAHI_CLIENT_NO_FAIL, callback, this, &error);
    if (!client)
        fail(error);
}

void ServiceAnnouncer::Private::freeClient()
{
    entries.clear(); // groups go with their client
    if (client)
        avahi_client_free(client);
    client = nullptr;
}

void ServiceAnnouncer::Private::setClientState(AvahiClientState state)
{
    isRunning = state == AVAHI_CLIENT_S_RUNNING;
    if (isRunning)
        return registerAll();
    dropGroups();
    if (state == AVAHI_CLIENT_CONNECTING)
        fail(AVAHI_ERR_NO_DAEMON);
    else if (state == AVAHI_CLIENT_FAILURE)
        fail(avahi_client_errno(client));
}

void ServiceAnnouncer::Private::registerAll()
{
    for (const auto &entry : entries)
        registerEntry(*entry);
}

void ServiceAnnouncer::Private::registerEntry(Entry &entry)
{
    const auto callback = [](AvahiEntryGroup *group, AvahiEntryGroupState state, void *data) {
        Entry &told = *static_cast<Entry *>(data);
        told.owner->setGroupState(group, told, state);
    };
    if (!entry.group)
        entry.group = avahi_entry_group_new(client, callback, &entry);
    int error = entry.group ? fill(entry) : avahi_client_errno(client);
    if (error == AVAHI_ERR_COLLISION)
        return renameEntry(entry);
    if (error >= 0)
        error = avahi_entry_group_commit(entry.group);
    if (error < 0)
        fail(error);
}

int ServiceAnnouncer::Private::fill(const Entry &entry) const
{
    if (!entry.service.resolves)
        return addPointer(entry);
    return avahi_entry_group_add_service(entry.group, interface, AVAHI_PROTO_INET, {},
                                         entry.service.name.toUtf8().constData(), webService, nullptr, nullptr,
                                         entry.service.port, nullptr);
}

int ServiceAnnouncer::Private::addPointer(const Entry &entry) const
{
    const QByteArray target = recordName({entry.service.name.toUtf8(), "_http", "_tcp", "local"});
    return avahi_entry_group_add_record(entry.group, interface, AVAHI_PROTO_INET, {}, "_http._tcp.local", classInternet,
                                        recordPointer, secondsToLive, target.constData(),
                                        static_cast<size_t>(target.size()));
}

void ServiceAnnouncer::Private::setGroupState(AvahiEntryGroup *group, Entry &entry, AvahiEntryGroupState state)
{
    entry.group = group; // it calls before it is returned
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED)
        Q_EMIT q.announced(entry.service.name);
    else if (state == AVAHI_ENTRY_GROUP_COLLISION)
        renameEntry(entry);
    else if (state == AVAHI_ENTRY_GROUP_FAILURE)
        fail(avahi_client_errno(client));
}

void ServiceAnnouncer::Private::renameEntry(Entry &entry)
{
    char *const other = avahi_alternative_service_name(entry.service.name.toUtf8().constData());
    entry.service.name = QString::fromUtf8(other);
    avahi_free(other);
    avahi_entry_group_reset(entry.group);
    registerEntry(entry);
}

void ServiceAnnouncer::Private::dropGroups()
{
    for (const auto &entry : entries)
        if (AvahiEntryGroup *const group = std::exchange(entry->group, nullptr))
            avahi_entry_group_free(group);
}

ServiceAnnouncer::ServiceAnnouncer(const QHostAddress &where, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(*this, where))
{
}

ServiceAnnouncer::~ServiceAnnouncer() = default;

void ServiceAnnouncer::announce(const std::vector<Service> &services)
{
    const PollLock lock(d->poll);
    d->dropGroups();
    d->entries.clear();
    for (const Service &service : services)
        d->entries.push_back(std::make_unique<Private::Entry>(Private::Entry{service, nullptr, d.get()}));
    if (!d->client)
        d->makeClient();
    else if (d->isRunning)
        d->registerAll();
}
