#include "FakeNetServices.h"

#include <QWPlatform/network/services/SocketAddress.h>

#include <algorithm>

using namespace platform;

class FakeNetService : public NetService
{
public:
    FakeNetService(std::shared_ptr<FakeNetServices *> network, QString name)
        : m_network(std::move(network))
        , m_name(std::move(name))
    {
    }

    ~FakeNetService() override { endWaiting(); }

    QString name() const override { return m_name; }
    QString type() const override { return "_http._tcp."; }
    QString domain() const override { return "local."; }
    QList<QByteArray> addresses() const override { return m_addresses; }
    int port() const override { return m_port; }
    void setDelegate(NetServiceDelegate *delegate) override { m_delegate = delegate; }

    void resolveWithTimeout(std::chrono::milliseconds timeout) override
    {
        endWaiting();
        if (FakeNetServices *network = *m_network) {
            network->resolutions.push_back({m_name, timeout});
            network->m_waiting.push_back(this);
        }
    }

    void endWaiting()
    {
        if (FakeNetServices *network = *m_network)
            std::erase(network->m_waiting, this);
    }

    /// May end this object's life.
    void answer(const QStringList &addresses, int port)
    {
        endWaiting();
        m_port = port;
        m_addresses.clear();
        for (const QString &address : addresses)
            m_addresses.append(socketAddress(address, port));
        if (m_delegate)
            m_delegate->netServiceDidResolveAddress(*this);
    }

    /// May end this object's life.
    void giveUp()
    {
        endWaiting();
        if (m_delegate)
            m_delegate->netServiceDidNotResolve(*this, {{"reason", "nobody answers"}});
    }

private:
    std::shared_ptr<FakeNetServices *> m_network;
    QString m_name;
    NetServiceDelegate *m_delegate = nullptr;
    QList<QByteArray> m_addresses;
    int m_port = -1;
};

class FakeNetServiceBrowser : public NetServiceBrowser
{
public:
    explicit FakeNetServiceBrowser(std::shared_ptr<FakeNetServices *> network)
        : m_network(std::move(network))
    {
    }

    ~FakeNetServiceBrowser() override { FakeNetServiceBrowser::stop(); }

    void setDelegate(NetServiceBrowserDelegate *delegate) override { m_delegate = delegate; }
    NetServiceBrowserDelegate *delegate() const { return m_delegate; }

    void searchForServicesOfTypeInDomain(const QString &type, const QString &domain) override
    {
        stop();
        FakeNetServices *network = *m_network;
        if (!network)
            return;
        network->searches.push_back({type, domain});
        network->m_searching.push_back(this);
        m_turn = std::make_unique<QObject>();
        if (type == "_http._tcp." && domain == "local.")
            _tellWhatIsThere(*network);
    }

    void stop() override
    {
        m_turn.reset();
        if (FakeNetServices *network = *m_network)
            std::erase(network->m_searching, this);
    }

private:
    void _tellWhatIsThere(const FakeNetServices &network)
    {
        for (const auto &announced : network.m_announced)
            if (announced.isPresent)
                QMetaObject::invokeMethod(
                    m_turn.get(), [this, name = announced.name] { _tellOf(name); }, Qt::QueuedConnection);
    }

    void _tellOf(const QString &name)
    {
        FakeNetServices *network = *m_network;
        const auto *announced = network ? network->_find(name) : nullptr;
        if (announced && announced->isPresent && m_delegate)
            m_delegate->netServiceBrowserDidFindService(*this, network->_make(name), false);
    }

    std::shared_ptr<FakeNetServices *> m_network;
    NetServiceBrowserDelegate *m_delegate = nullptr;
    std::unique_ptr<QObject> m_turn; ///< What is still to be told dies with it.
};

FakeNetServices::FakeNetServices()
    : m_network(std::make_shared<FakeNetServices *>(this))
{
}

FakeNetServices::~FakeNetServices()
{
    *m_network = nullptr;
}

std::unique_ptr<NetServiceBrowser> FakeNetServices::makeBrowser()
{
    return std::make_unique<FakeNetServiceBrowser>(m_network);
}

void FakeNetServices::announce(const QString &name, const QStringList &addresses, int port, Coming coming)
{
    if (Announcement *known = _find(name))
        *known = {name, addresses, port, true};
    else
        m_announced.push_back({name, addresses, port, true});
    _tellSearches([&](NetServiceBrowserDelegate &delegate, NetServiceBrowser &browser) {
        delegate.netServiceBrowserDidFindService(browser, _make(name), coming == Coming::More);
    });
}

void FakeNetServices::withdraw(const QString &name, Coming coming)
{
    if (Announcement *known = _find(name))
        known->isPresent = false;
    _tellSearches([&](NetServiceBrowserDelegate &delegate, NetServiceBrowser &browser) {
        delegate.netServiceBrowserDidRemoveService(browser, _make(name), coming == Coming::More);
    });
}

bool FakeNetServices::resolve(const QString &name)
{
    const Announcement *known = _find(name);
    const auto asked = _waiting(name);
    if (!known || asked.empty())
        return false;
    const Announcement answer = *known;
    for (FakeNetService *service : asked)
        if (std::count(m_waiting.begin(), m_waiting.end(), service) != 0) // not gone with the one before
            service->answer(answer.addresses, answer.port);
    return true;
}

bool FakeNetServices::failToResolve(const QString &name)
{
    const auto asked = _waiting(name);
    for (FakeNetService *service : asked)
        if (std::count(m_waiting.begin(), m_waiting.end(), service) != 0)
            service->giveUp();
    return !asked.empty();
}

QStringList FakeNetServices::resolving() const
{
    QStringList names;
    for (const FakeNetService *service : m_waiting)
        names.append(service->name());
    return names;
}

void FakeNetServices::failSearch()
{
    while (!m_searching.empty()) {
        FakeNetServiceBrowser *browser = m_searching.front();
        m_searching.erase(m_searching.begin());
        if (browser->delegate())
            browser->delegate()->netServiceBrowserDidNotSearch(*browser, {{"reason", "no daemon"}});
    }
}

int FakeNetServices::searching() const
{
    return static_cast<int>(m_searching.size());
}

FakeNetServices::Announcement *FakeNetServices::_find(const QString &name)
{
    const auto found = std::find_if(m_announced.begin(), m_announced.end(),
                                    [&](const Announcement &announced) { return announced.name == name; });
    return found == m_announced.end() ? nullptr : &*found;
}

std::shared_ptr<NetService> FakeNetServices::_make(const QString &name)
{
    return std::make_shared<FakeNetService>(m_network, name);
}

std::vector<FakeNetService *> FakeNetServices::_waiting(const QString &name) const
{
    std::vector<FakeNetService *> waiting;
    for (FakeNetService *service : m_waiting)
        if (service->name() == name)
            waiting.push_back(service);
    return waiting;
}

template <class Tell>
void FakeNetServices::_tellSearches(const Tell &tell)
{
    for (FakeNetServiceBrowser *browser : std::vector(m_searching)) {
        const bool searchesStill = std::count(m_searching.begin(), m_searching.end(), browser) != 0;
        if (searchesStill && browser->delegate())
            tell(*browser->delegate(), *browser);
    }
}
