#include "ScriptedDaemon.h"
#include "ServicesHeard.h"

#include <QWPlatform/linux/services/LinuxNetServices.h>
#include <QWPlatform/network/services/SocketAddress.h>

#include <QTest>

using namespace platform;
using Kind = ServiceEvent::Kind;

/// The services of the environment's list beside what the daemon says; the daemon is the test's.
class tst_ListedServicesFound : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void listedServicesAreFoundAndResolved();
    void listedServicesNeedNoDaemon();
    void listOfTheEnvironmentCountsWhenABrowserIsMade();
    void listedServicesAreOfOneType();
    void announcedServiceThatIsListedIsToldOnce();
    void listedServiceMayBeResolvedWithoutBrowser();

private:
    void _search(const QString &list);

    std::unique_ptr<ScriptedDaemon> m_daemon;
    std::unique_ptr<ServicesHeard> m_heard;
    std::unique_ptr<NetServiceBrowser> m_browser;
    ResolutionHeard m_resolution;
};

void tst_ListedServicesFound::init()
{
    m_daemon = std::make_unique<ScriptedDaemon>();
    m_heard = std::make_unique<ServicesHeard>();
    m_resolution = ResolutionHeard();
}

void tst_ListedServicesFound::cleanup()
{
    m_browser.reset();
    m_heard.reset();
    m_daemon.reset(); // waits until its threads have gone
}

void tst_ListedServicesFound::_search(const QString &list)
{
    LinuxNetServices services(list, m_daemon->function());
    m_browser = services.makeBrowser();
    m_browser->setDelegate(m_heard.get());
    m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Search), 1);
}

void tst_ListedServicesFound::listedServicesAreFoundAndResolved()
{
    _search("Vesk on A=10.0.0.1:80;Vesk on B=[::1]:81");
    QTRY_COMPARE(m_heard->calls, (QStringList{"+ Vesk on A…", "+ Vesk on B"}));
    const auto service = m_heard->find("Vesk on B");
    service->setDelegate(&m_resolution);
    service->resolveWithTimeout(std::chrono::milliseconds(1));
    QCOMPARE(m_resolution.resolved, 0); // from the event loop only
    QTRY_COMPARE(m_resolution.resolved, 1);
    QCOMPARE(m_resolution.addresses, (QList<QByteArray>{socketAddress("::1", 81)}));
    QCOMPARE(m_resolution.port, 81);
    QCOMPARE(m_daemon->asked(ServiceCommand::Kind::Resolve), 0);
    m_daemon->tell({ScriptedDaemon::appeared("Vesk on C")});
    QTRY_COMPARE(m_heard->calls.mid(2), QStringList{"+ Vesk on C"});
}

void tst_ListedServicesFound::listedServicesNeedNoDaemon()
{
    m_daemon->refuse("no daemon");
    QTest::ignoreMessage(QtWarningMsg, "Only the services of QW_NET_SERVICES are found: no daemon");
    LinuxNetServices services("Vesk on A=10.0.0.1:80", m_daemon->function());
    m_browser = services.makeBrowser();
    m_browser->setDelegate(m_heard.get());
    m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    QTRY_COMPARE(m_daemon->sessionsEver(), 1);
    QTRY_COMPARE(m_daemon->sessions(), 0); // it was told, and has gone
    QCOMPARE(m_heard->calls, QStringList{"+ Vesk on A"});
}

void tst_ListedServicesFound::listOfTheEnvironmentCountsWhenABrowserIsMade()
{
    LinuxNetServices services;
    qputenv("QW_NET_SERVICES", "Vesk on K%C3%BCche=10.0.0.1:80");
    m_browser = services.makeBrowser();
    qunsetenv("QW_NET_SERVICES");
    m_browser->setDelegate(m_heard.get());
    m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    QTRY_VERIFY(m_heard->find("Vesk on Küche"));
    m_browser->stop(); // real daemons are not asked for more
}

void tst_ListedServicesFound::listedServicesAreOfOneType()
{
    LinuxNetServices services("Vesk on A=10.0.0.1:80", m_daemon->function());
    m_browser = services.makeBrowser();
    m_browser->setDelegate(m_heard.get());
    m_browser->searchForServicesOfTypeInDomain("_ipp._tcp.", "local.");
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Search), 1);
    m_daemon->tell({{.kind = Kind::Failed, .reason = "killed"}}); // and then there is nothing to find
    QTRY_COMPARE(m_heard->calls, QStringList{"did not search"});
}

void tst_ListedServicesFound::announcedServiceThatIsListedIsToldOnce()
{
    _search("A=10.0.0.1:80");
    m_daemon->tell({ScriptedDaemon::appeared("A"), ScriptedDaemon::appeared("B"), ScriptedDaemon::vanished("A"),
                    ScriptedDaemon::vanished("B")});
    QTRY_COMPARE(m_heard->calls, (QStringList{"+ A", "+ B…", "- B"}));
}

void tst_ListedServicesFound::listedServiceMayBeResolvedWithoutBrowser()
{
    _search("A=10.0.0.1:80");
    QTRY_VERIFY(m_heard->find("A"));
    const auto service = m_heard->find("A");
    service->setDelegate(&m_resolution);
    m_browser.reset();
    service->resolveWithTimeout(std::chrono::milliseconds(1));
    QTRY_COMPARE(m_resolution.resolved, 1);
}

QTEST_GUILESS_MAIN(tst_ListedServicesFound)
#include "tst_ListedServicesFound.moc"
