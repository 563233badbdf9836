#include "PrivateAvahi.h"
#include "ServicesHeard.h"

#include <QWPlatform/linux/services/LinuxNetServices.h>
#include <QWPlatform/network/services/SocketAddress.h>

#include <QTest>
#include <QTimer>

#include <netinet/in.h>

using namespace platform;

namespace
{
constexpr int longEnough = 60'000; // milliseconds
constexpr auto resolveTimeout = std::chrono::seconds(5);

bool isMapped(const QByteArray &library)
{
    QFile maps("/proc/self/maps");
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

std::unique_ptr<NetServiceBrowser> search(ServicesHeard &heard)
{
    LinuxNetServices services;
    auto browser = services.makeBrowser();
    browser->setDelegate(&heard);
    browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    return browser;
}

/// What the program does that the test starts: it ends as soon as it has begun to search.
int quitWhileSearching(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    ServicesHeard heard;
    const auto browser = search(heard);
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return application.exec();
}
} // namespace

/// The services of a real Avahi daemon, in a network of the test's own.
class tst_AvahiServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void libraryIsMappedWithTheFirstSearch();
    void servicesAreFoundAndResolved();
    void serviceThatLeavesIsRemoved();
    void serviceThatReturnsIsFoundAgain();
    void nameWithoutHostDoesNotResolve();
    void serviceOnTwoInterfacesIsToldOnce();
    void serviceOnIPv6AloneResolves();
    void thousandServicesAreFound();
    void daemonKilledInMidSearchEndsIt();
    void busKilledInMidSearchEndsIt();
    void nobodyToAsk_data();
    void nobodyToAsk();
    void pausedDaemonDoesNotResolve();
    void quittingNeverWaits_data();
    void quittingNeverWaits();

private:
    bool _finds(const QStringList &names);

    PrivateAvahi m_avahi;
    ServicesHeard m_heard;
    ResolutionHeard m_resolution;
    std::unique_ptr<NetServiceBrowser> m_browser;
};

void tst_AvahiServices::initTestCase()
{
    QVERIFY(m_avahi.startBus());
    QVERIFY(m_avahi.startDaemon());
}

void tst_AvahiServices::init()
{
    m_heard = ServicesHeard();
    m_resolution = ResolutionHeard();
}

void tst_AvahiServices::cleanup()
{
    m_browser.reset();
    QVERIFY(m_avahi.startBus()); // nothing is announced any more
    QVERIFY(m_avahi.startDaemon());
}

bool tst_AvahiServices::_finds(const QStringList &names)
{
    return QTest::qWaitFor(
        [&] {
            return std::all_of(names.begin(), names.end(), [&](const QString &name) { return m_heard.find(name); });
        },
        longEnough);
}

void tst_AvahiServices::libraryIsMappedWithTheFirstSearch()
{
    LinuxNetServices services;
    auto browser = services.makeBrowser();
    if (isMapped("libavahi-client")) // by the test before, when it was not run alone
        QVERIFY(isMapped("libQWPlatformAvahi"));
    else
        QVERIFY(!isMapped("libQWPlatformAvahi"));
    m_browser = search(m_heard);
    QTRY_VERIFY(isMapped("libavahi-client"));
}

void tst_AvahiServices::servicesAreFoundAndResolved()
{
    const QStringList names{"Vesk on Studio", "Blue Vesk on Küche – 2; \"=\"", "Jukebox"};
    int port = 8123;
    for (const QString &name : names)
        QVERIFY(m_avahi.announce(name, port++));
    m_browser = search(m_heard);
    QVERIFY(_finds(names));
    for (const QString &name : names)
        QCOMPARE(m_heard.calls.filter("+ " + name).size(), 1);
    const auto service = m_heard.find(names.at(1));
    QCOMPARE(service->type(), "_http._tcp.");
    QCOMPARE(service->domain(), "local.");
    service->setDelegate(&m_resolution);
    service->resolveWithTimeout(resolveTimeout);
    QTRY_COMPARE_WITH_TIMEOUT(m_resolution.resolved, 1, longEnough);
    QCOMPARE(m_resolution.port, 8124);
    QCOMPARE(m_resolution.addresses.front(), socketAddress("127.0.0.1", 8124));
}

void tst_AvahiServices::serviceThatLeavesIsRemoved()
{
    QVERIFY(m_avahi.announce("Vesk on Studio", 8123));
    QVERIFY(m_avahi.announce("Vesk on Stage", 8124));
    m_browser = search(m_heard);
    QVERIFY(_finds({"Vesk on Studio", "Vesk on Stage"}));
    QVERIFY(m_avahi.withdraw("Vesk on Studio"));
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.calls.filter("- "), QStringList{"- Vesk on Studio"}, longEnough);
}

void tst_AvahiServices::serviceThatReturnsIsFoundAgain()
{
    m_browser = search(m_heard);
    for (int port = 8123; port < 8126; ++port) {
        QVERIFY(m_avahi.announce("Vesk on Studio", port));
        QTRY_COMPARE_WITH_TIMEOUT(m_heard.lastCall(), "+ Vesk on Studio", longEnough);
        m_heard.services.back()->setDelegate(&m_resolution);
        m_heard.services.back()->resolveWithTimeout(resolveTimeout);
        QTRY_COMPARE_WITH_TIMEOUT(m_resolution.port, port, longEnough);
        QVERIFY(m_avahi.withdraw("Vesk on Studio"));
        QTRY_COMPARE_WITH_TIMEOUT(m_heard.lastCall(), "- Vesk on Studio", longEnough);
    }
}

void tst_AvahiServices::nameWithoutHostDoesNotResolve()
{
    QVERIFY(m_avahi.announceNameOnly("Vesk on Nowhere"));
    m_browser = search(m_heard);
    QVERIFY(_finds({"Vesk on Nowhere"}));
    const auto service = m_heard.find("Vesk on Nowhere");
    service->setDelegate(&m_resolution);
    service->resolveWithTimeout(resolveTimeout);
    QTRY_COMPARE_WITH_TIMEOUT(m_resolution.failed, 1, longEnough);
    QVERIFY(service->addresses().isEmpty());
    QVERIFY(!m_resolution.reason.isEmpty());
}

void tst_AvahiServices::serviceOnTwoInterfacesIsToldOnce()
{
    QVERIFY(PrivateAvahi::addInterfaces());
    QVERIFY(m_avahi.startDaemon("left,right"));
    QVERIFY(m_avahi.announce("Vesk on Studio", 8123));
    m_browser = search(m_heard);
    QVERIFY(_finds({"Vesk on Studio"}));
    const auto service = m_heard.find("Vesk on Studio");
    service->setDelegate(&m_resolution);
    service->resolveWithTimeout(resolveTimeout);
    QTRY_COMPARE_WITH_TIMEOUT(m_resolution.resolved, 1, longEnough);
    const QList<QByteArray> possible{socketAddress("10.9.1.1", 8123), socketAddress("10.9.2.1", 8123)};
    QVERIFY(possible.contains(m_resolution.addresses.front()));
    QVERIFY(m_avahi.withdraw("Vesk on Studio"));
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.calls, (QStringList{"+ Vesk on Studio", "- Vesk on Studio"}), longEnough);
}

void tst_AvahiServices::serviceOnIPv6AloneResolves()
{
    QVERIFY(m_avahi.announceOnIPv6("Vesk on Studio", 8123));
    m_browser = search(m_heard);
    QVERIFY(_finds({"Vesk on Studio"}));
    const auto service = m_heard.find("Vesk on Studio");
    service->setDelegate(&m_resolution);
    service->resolveWithTimeout(resolveTimeout);
    QTRY_COMPARE_WITH_TIMEOUT(m_resolution.resolved, 1, longEnough);
    QCOMPARE(m_resolution.addresses, (QList<QByteArray>{socketAddress("2001:db8::7", 8123)}));
    QCOMPARE(m_resolution.port, 8123);
}

void tst_AvahiServices::thousandServicesAreFound()
{
    for (int i = 0; i < 1000; ++i)
        QVERIFY(m_avahi.announce("Printer " + QString::number(i), 631));
    m_browser = search(m_heard);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.services.size(), size_t(1000), longEnough);
}

void tst_AvahiServices::daemonKilledInMidSearchEndsIt()
{
    QVERIFY(m_avahi.announce("Vesk on Studio", 8123));
    m_browser = search(m_heard);
    QVERIFY(_finds({"Vesk on Studio"}));
    m_avahi.killDaemon();
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.lastCall(), "did not search", longEnough);

    QVERIFY(m_avahi.startDaemon());
    QVERIFY(m_avahi.announce("Vesk on Stage", 8123));
    m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
    QVERIFY(_finds({"Vesk on Stage"}));
}

void tst_AvahiServices::busKilledInMidSearchEndsIt()
{
    QVERIFY(m_avahi.announce("Vesk on Studio", 8123));
    m_browser = search(m_heard);
    QVERIFY(_finds({"Vesk on Studio"}));
    m_avahi.killBus();
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.lastCall(), "did not search", longEnough);
}

using Trouble = void (PrivateAvahi::*)();
Q_DECLARE_METATYPE(Trouble)

void tst_AvahiServices::nobodyToAsk_data()
{
    QTest::addColumn<Trouble>("trouble");
    QTest::newRow("no daemon") << &PrivateAvahi::killDaemon;
    QTest::newRow("no bus") << &PrivateAvahi::killBus;
    QTest::newRow("a daemon that hangs") << &PrivateAvahi::pauseDaemon;
    QTest::newRow("a bus that hangs") << &PrivateAvahi::pauseBus;
}

void tst_AvahiServices::nobodyToAsk()
{
    QFETCH(Trouble, trouble);
    (m_avahi.*trouble)();
    m_browser = search(m_heard);
    QVERIFY(m_heard.calls.isEmpty());
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.calls, QStringList{"did not search"}, longEnough);
    QVERIFY(!m_heard.reason.isEmpty());
}

void tst_AvahiServices::pausedDaemonDoesNotResolve()
{
    QVERIFY(m_avahi.announce("Vesk on Studio", 8123));
    m_browser = search(m_heard);
    QVERIFY(_finds({"Vesk on Studio"}));
    m_avahi.pauseDaemon();
    const auto service = m_heard.find("Vesk on Studio");
    service->setDelegate(&m_resolution);
    service->resolveWithTimeout(std::chrono::milliseconds(100));
    QTRY_COMPARE_WITH_TIMEOUT(m_resolution.failed, 1, longEnough);
}

void tst_AvahiServices::quittingNeverWaits_data()
{
    nobodyToAsk_data();
}

void tst_AvahiServices::quittingNeverWaits()
{
    QFETCH(Trouble, trouble);
    QProcess host;
    const auto run = [&] {
        host.start(QFileInfo("/proc/self/exe").symLinkTarget(), {"--quit-while-searching"});
        return host.waitForFinished(10'000) && host.exitStatus() == QProcess::NormalExit ? host.exitCode() : -1;
    };
    for (int i = 0; i < 5; ++i)
        QCOMPARE(run(), 0);
    (m_avahi.*trouble)();
    QCOMPARE(run(), 0);
}

int main(int argc, char **argv)
{
    if (argc == 2 && argv[1] == std::string("--quit-while-searching"))
        return quitWhileSearching(argc, argv);
    PrivateAvahi::enterPrivateNetwork();
    QCoreApplication application(argc, argv);
    tst_AvahiServices test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_AvahiServices.moc"
