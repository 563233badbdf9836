#pragma once

#include <QWPlatform/network/services/NetService.h>
#include <QWPlatform/network/services/NetServiceBrowser.h>
#include <QWPlatform/network/services/NetServices.h>

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

class FakeNetService;
class FakeNetServiceBrowser;

/// A local network whose services the test announces, withdraws and resolves. Searches hear of that at once; what was
/// announced before a search began it hears from the event loop.
class FakeNetServices : public platform::NetServices
{
public:
    enum class Coming
    {
        Last,
        More, ///< The delegate is told that more is coming.
    };

    FakeNetServices();
    ~FakeNetServices() override;
    std::unique_ptr<platform::NetServiceBrowser> makeBrowser() override;

    /// Announces a service of the type "_http._tcp." in "local."; one that is announced already is told once more.
    /// @p addresses are numbers ("192.0.2.7", "2001:db8::7"), in their order.
    void announce(const QString &name, const QStringList &addresses = {"192.0.2.7"}, int port = 8123,
                  Coming coming = Coming::Last);

    /// The service leaves; those who search are told with another object than the one that they found.
    void withdraw(const QString &name, Coming coming = Coming::Last);

    /// All that were asked to resolve the service are answered: with the addresses and the port that it was announced
    /// with last. False when nobody has asked, or it was never announced.
    bool resolve(const QString &name);

    /// All that were asked are told that nobody answers. False when nobody has asked.
    bool failToResolve(const QString &name);

    /// Names of the services whose resolution waits for an answer, in the order of the questions.
    QStringList resolving() const;

    /// Whoever searches is told that it did not search, and searches no longer.
    void failSearch();

    /// How many searches are going on.
    int searching() const;

    struct Search
    {
        QString type;
        QString domain;
    };

    struct Resolution
    {
        QString name;
        std::chrono::milliseconds timeout;
    };

    std::vector<Search> searches;        ///< All that were ever begun.
    std::vector<Resolution> resolutions; ///< All that were ever asked for.

private:
    friend class FakeNetService;
    friend class FakeNetServiceBrowser;

    struct Announcement
    {
        QString name;
        QStringList addresses;
        int port;
        bool isPresent;
    };

    Announcement *_find(const QString &name);
    std::shared_ptr<platform::NetService> _make(const QString &name);
    std::vector<FakeNetService *> _waiting(const QString &name) const;

    template <class Tell>
    void _tellSearches(const Tell &tell);

    std::vector<Announcement> m_announced;
    std::vector<FakeNetService *> m_waiting; ///< They take themselves off.
    std::vector<FakeNetServiceBrowser *> m_searching;
    std::shared_ptr<FakeNetServices *> m_network; ///< Services outlive this, and see that it is null then.
};
