#include "ScriptedDaemon.h"
#include "ServicesHeard.h"

#include <QWPlatform/linux/services/LinuxNetServices.h>
#include <QWPlatform/network/services/SocketAddress.h>

#include <QRegularExpression>
#include <QTest>

using namespace platform;
using Kind = ServiceEvent::Kind;

/// What is made of what the daemon says; the daemon is the test's.
class tst_LinuxNetServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void searchAsksForTypeAndDomain();
    void whatComesTogetherIsToldAsComing();
    void serviceOnTwoInterfacesIsToldOnce();
    void serviceThatFlapsIsToldInOrder();
    void thousandServicesAreTold();
    void namesAreTakenAsTheyAre();
    void failureEndsTheSearch();
    void daemonThatSaysNothingDidNotSearch();
    void searchAfterFailureBeginsAnew();
    void stoppedSearchIsSilent();
    void browserMayGoWhileItTells();
    void newSearchWhileItTellsForgetsTheOld();
    void resolvedServiceHasAddressesAndPort();
    void unansweredResolutionFails();
    void resolutionIsLimitedInTime();
    void failureFailsResolutionsToo();
    void serviceThatGoesAsksNoMore();
    void serviceMayGoWhileItIsTold();
    void serviceOutlivesItsBrowser();
    void askingAnewForgetsTheFirstQuestion();

private:
    void _search(const QString &list = {});
    std::shared_ptr<NetService> _found(const QString &name);
    std::uint64_t _question() const;

    std::unique_ptr<ScriptedDaemon> m_daemon;
    std::unique_ptr<ServicesHeard> m_heard;
    std::unique_ptr<NetServiceBrowser> m_browser;
    ResolutionHeard m_resolution;
};

void tst_LinuxNetServices::init()
{
    m_daemon = std::make_unique<ScriptedDaemon>();
    m_heard = std::make_unique<ServicesHeard>();
    m_resolution = ResolutionHeard();
}

void tst_LinuxNetServices::cleanup()
{
    m_browser.reset();
    m_heard.reset();
    m_daemon.reset(); // waits until its threads have gone
}

void tst_LinuxNetServices::_search(const QString &list)
{
    LinuxNetServices services(list, m_daemon->function());
    m_browser = services.makeBrowser();
    m_browser->setDelegate(m_heard.get());
    m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Search), 1);
}

std::shared_ptr<NetService> tst_LinuxNetServices::_found(const QString &name)
{
    m_daemon->tell({ScriptedDaemon::appeared(name.toStdString())});
    (void)QTest::qWaitFor([&] { return m_heard->find(name) != nullptr; });
    const auto service = m_heard->find(name);
    service->setDelegate(&m_resolution);
    return service;
}

std::uint64_t tst_LinuxNetServices::_question() const
{
    (void)QTest::qWaitFor([&] { return m_daemon->asked(ServiceCommand::Kind::Resolve) != 0; });
    return m_daemon->commands().back().question;
}

void tst_LinuxNetServices::searchAsksForTypeAndDomain()
{
    _search();
    const ServiceCommand asked = m_daemon->commands().front();
    QCOMPARE(asked.service.type, "_http._tcp.");
    QCOMPARE(asked.service.domain, "local.");
    QVERIFY(m_heard->calls.isEmpty());
}

void tst_LinuxNetServices::whatComesTogetherIsToldAsComing()
{
    _search();
    m_daemon->tell({ScriptedDaemon::appeared("A"), ScriptedDaemon::appeared("B"), ScriptedDaemon::vanished("A")});
    QTRY_COMPARE(m_heard->calls, (QStringList{"+ A…", "+ B…", "- A"}));
}

void tst_LinuxNetServices::serviceOnTwoInterfacesIsToldOnce()
{
    _search();
    m_daemon->tell({ScriptedDaemon::appeared("A", 1), ScriptedDaemon::appeared("A", 2),
                    ScriptedDaemon::appeared("A", 2), ScriptedDaemon::appeared("B", 2)});
    QTRY_COMPARE(m_heard->calls, (QStringList{"+ A…", "+ B"}));
    m_daemon->tell({ScriptedDaemon::vanished("A", 2), ScriptedDaemon::vanished("B", 2)});
    QTRY_COMPARE(m_heard->calls.mid(2), QStringList{"- B"});
    m_daemon->tell({ScriptedDaemon::vanished("A", 1), ScriptedDaemon::vanished("A", 1), ScriptedDaemon::vanished("C")});
    QTRY_COMPARE(m_heard->calls.mid(3), QStringList{"- A"});
}

void tst_LinuxNetServices::serviceThatFlapsIsToldInOrder()
{
    _search();
    std::vector<ServiceEvent> events;
    for (int i = 0; i < 3; ++i) {
        events.push_back(ScriptedDaemon::appeared("A"));
        events.push_back(ScriptedDaemon::vanished("A"));
    }
    events.push_back(ScriptedDaemon::appeared("A"));
    m_daemon->tell(events);
    QTRY_COMPARE(m_heard->calls, (QStringList{"+ A…", "- A…", "+ A…", "- A…", "+ A…", "- A…", "+ A"}));
}

void tst_LinuxNetServices::thousandServicesAreTold()
{
    _search();
    for (int i = 0; i < 1000; ++i)
        m_daemon->tell({ScriptedDaemon::appeared("Printer " + std::to_string(i))});
    QTRY_COMPARE(m_heard->calls.size(), 1000);
    QVERIFY(m_heard->find("Printer 0"));
    QVERIFY(m_heard->find("Printer 999"));
    std::vector<ServiceEvent> gone;
    for (int i = 0; i < 1000; ++i)
        gone.push_back(ScriptedDaemon::vanished("Printer " + std::to_string(i)));
    m_daemon->tell(gone);
    QTRY_COMPARE(m_heard->calls.size(), 2000);
    QCOMPARE(m_heard->calls.filter("…").filter("-").size(), 999); // the last one is not followed by any
    QCOMPARE(m_heard->calls.last(), "- Printer 999");
}

void tst_LinuxNetServices::namesAreTakenAsTheyAre()
{
    _search();
    const auto service = _found("Vesk on Küche; \"=\" \\032 录音");
    QCOMPARE(service->name(), "Vesk on Küche; \"=\" \\032 录音");
    QCOMPARE(service->type(), "_http._tcp.");
    QCOMPARE(service->domain(), "local.");
    QCOMPARE(service->port(), -1);
    QVERIFY(service->addresses().isEmpty());
    QVERIFY(isSameService(*service, *_found("Vesk on Küche; \"=\" \\032 录音")));
}

void tst_LinuxNetServices::failureEndsTheSearch()
{
    m_daemon->refuse("no daemon");
    LinuxNetServices services({}, m_daemon->function());
    m_browser = services.makeBrowser();
    m_browser->setDelegate(m_heard.get());
    m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    QVERIFY(m_heard->calls.isEmpty()); // from the event loop only
    QTRY_COMPARE(m_heard->calls, QStringList{"did not search"});
    QCOMPARE(m_heard->reason, "no daemon");
    m_daemon->waitUntilLeft();
}

void tst_LinuxNetServices::daemonThatSaysNothingDidNotSearch()
{
    _search();
    QTRY_COMPARE_WITH_TIMEOUT(m_heard->calls, QStringList{"did not search"}, 60'000);
    m_daemon->waitUntilLeft();
}

void tst_LinuxNetServices::searchAfterFailureBeginsAnew()
{
    _search();
    _found("A");
    m_daemon->tell({{.kind = Kind::Failed, .reason = "killed"}});
    QTRY_COMPARE(m_heard->calls, (QStringList{"+ A", "did not search"}));
    m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Search), 2);
    m_daemon->tell({ScriptedDaemon::appeared("A")});
    QTRY_COMPARE(m_heard->calls, (QStringList{"+ A", "did not search", "+ A"}));
}

void tst_LinuxNetServices::stoppedSearchIsSilent()
{
    _search("Listed=10.0.0.1:80");
    m_daemon->tell({ScriptedDaemon::appeared("A")});
    m_browser->stop();
    m_daemon->waitUntilLeft();
    QCoreApplication::processEvents();
    QVERIFY2(m_heard->calls.filter("+ A").isEmpty(), qPrintable(m_heard->calls.join(", ")));
}

void tst_LinuxNetServices::browserMayGoWhileItTells()
{
    _search();
    m_heard->onCall = [this] { m_browser.reset(); };
    m_daemon->tell({ScriptedDaemon::appeared("A"), ScriptedDaemon::appeared("B")});
    QTRY_VERIFY(!m_browser);
    m_daemon->waitUntilLeft();
    QCOMPARE(m_heard->calls, QStringList{"+ A…"});
}

void tst_LinuxNetServices::newSearchWhileItTellsForgetsTheOld()
{
    _search();
    m_heard->onCall = [this] {
        m_heard->onCall = [] {};
        m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    };
    m_daemon->tell({ScriptedDaemon::appeared("A"), ScriptedDaemon::appeared("B")});
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Search), 2);
    QTRY_COMPARE(m_daemon->sessions(), 1);
    m_daemon->tell({ScriptedDaemon::appeared("A")});
    QTRY_COMPARE(m_heard->calls, (QStringList{"+ A…", "+ A"}));
}

void tst_LinuxNetServices::resolvedServiceHasAddressesAndPort()
{
    _search();
    const auto service = _found("A");
    service->resolveWithTimeout(std::chrono::minutes(1));
    const auto question = _question();
    QCOMPARE(m_daemon->commands().back().service.name, "A");
    const std::string address = socketAddress("10.0.0.1", 8123).toStdString();
    m_daemon->tell({{.kind = Kind::Resolved, .question = question, .addresses = {address}, .port = 8123}});
    QTRY_COMPARE(m_resolution.resolved, 1);
    QCOMPARE(m_resolution.addresses, (QList<QByteArray>{socketAddress("10.0.0.1", 8123)}));
    QCOMPARE(m_resolution.port, 8123);
}

void tst_LinuxNetServices::unansweredResolutionFails()
{
    _search();
    const auto service = _found("A");
    service->resolveWithTimeout(std::chrono::minutes(1));
    m_daemon->tell({{.kind = Kind::NotResolved, .question = _question(), .reason = "timeout"}});
    QTRY_COMPARE(m_resolution.failed, 1);
    QCOMPARE(m_resolution.reason, "timeout");
    QCOMPARE(service->port(), -1);
}

void tst_LinuxNetServices::resolutionIsLimitedInTime()
{
    _search();
    const auto service = _found("A");
    service->resolveWithTimeout(std::chrono::milliseconds(1));
    QTRY_COMPARE(m_resolution.failed, 1);
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Forget), 1);
}

void tst_LinuxNetServices::failureFailsResolutionsToo()
{
    _search();
    const auto one = _found("A");
    const auto other = _found("B");
    one->resolveWithTimeout(std::chrono::minutes(1));
    other->resolveWithTimeout(std::chrono::minutes(1));
    m_daemon->tell({{.kind = Kind::Failed, .reason = "killed"}});
    QTRY_COMPARE(m_resolution.failed, 2);
    QCOMPARE(m_heard->calls.last(), "did not search");
}

void tst_LinuxNetServices::serviceThatGoesAsksNoMore()
{
    _search();
    auto service = _found("A");
    service->resolveWithTimeout(std::chrono::minutes(1));
    const auto question = _question();
    m_heard->services.clear();
    service.reset();
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Forget), 1);
    m_daemon->tell({{.kind = Kind::Resolved, .question = question, .port = 1}, ScriptedDaemon::appeared("B")});
    QTRY_VERIFY(m_heard->find("B"));
    QCOMPARE(m_resolution.resolved, 0);
}

void tst_LinuxNetServices::serviceMayGoWhileItIsTold()
{
    _search();
    auto service = _found("A");
    m_heard->services.clear();
    m_resolution.onCall = [&] {
        m_browser.reset();
        service.reset();
    };
    service->resolveWithTimeout(std::chrono::minutes(1));
    m_daemon->tell({{.kind = Kind::Resolved, .question = _question(), .port = 1}, {.kind = Kind::Failed}});
    QTRY_COMPARE(m_resolution.resolved, 1);
    QVERIFY(!service);
    m_daemon->waitUntilLeft();
}

void tst_LinuxNetServices::serviceOutlivesItsBrowser()
{
    _search();
    const auto service = _found("A");
    service->resolveWithTimeout(std::chrono::minutes(1));
    const auto question = _question();
    m_browser.reset();
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::StopSearch), 1);
    m_daemon->tell({{.kind = Kind::Resolved, .question = question, .port = 1}});
    QTRY_COMPARE(m_resolution.resolved, 1);
    m_daemon->waitUntilLeft(); // nobody needs it any more

    service->resolveWithTimeout(std::chrono::minutes(1));
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Resolve), 2);
    m_daemon->tell({{.kind = Kind::Resolved, .question = m_daemon->commands().back().question, .port = 2}});
    QTRY_COMPARE(m_resolution.port, 2);
}

void tst_LinuxNetServices::askingAnewForgetsTheFirstQuestion()
{
    _search();
    const auto service = _found("A");
    service->resolveWithTimeout(std::chrono::minutes(1));
    const auto first = _question();
    service->resolveWithTimeout(std::chrono::minutes(1));
    QTRY_COMPARE(m_daemon->asked(ServiceCommand::Kind::Resolve), 2);
    const auto second = m_daemon->commands().back().question;
    m_daemon->tell({{.kind = Kind::Resolved, .question = first, .port = 1},
                    {.kind = Kind::Resolved, .question = second, .port = 2}});
    QTRY_COMPARE(m_resolution.resolved, 1);
    QCOMPARE(m_resolution.port, 2);
}

QTEST_GUILESS_MAIN(tst_LinuxNetServices)
#include "tst_LinuxNetServices.moc"
