#include "Curl.h"

#include <QWPlatform/linux/services/LinuxNetServices.h>
#include <network/PrivateAvahi.h>
#include <network/ServicesHeard.h>
#include <simulators/recorder/RecorderPresence.h>
#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

#include <QSignalSpy>
#include <QTest>

using namespace platform;
using namespace std::chrono_literals;

namespace
{
constexpr int longEnough = 60'000; // milliseconds
constexpr auto resolveTimeout = 5s;

/// A recorder that is announced as @p settings say, on loopback.
class AnnouncedRecorder
{
public:
    explicit AnnouncedRecorder(const RecorderPresenceSettings &settings)
    {
        recorder.setTakes(MadeUpTakes::takes({.count = 3, .length = 0.5}));
        if (!recorder.listen())
            qFatal("Cannot listen");
        presence.emplace(recorder, settings);
        QObject::connect(&*presence, &RecorderPresence::announced, &recorder,
                         [this](const QString &name) { announced += name; });
        QObject::connect(&*presence, &RecorderPresence::failed, &recorder,
                         [this](const QString &reason) { failures += reason; });
    }

    RecorderSimulator recorder{QString()};
    QStringList announced;
    QStringList failures;
    std::optional<RecorderPresence> presence;
};
} // namespace

/// Recorders announced by a real Avahi daemon, in a network of the test's own.
class tst_RecorderPresence : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void recordersAreFoundAndServe();
    void recorderThatLeavesIsWithdrawn();
    void recorderWithoutHostDoesNotResolve();
    void takenNameIsChanged();
    void printersAreOtherServices();
    void flappingComesAndGoes();
    void missingDaemonIsToldAndALaterOneIsUsed();

private:
    bool _finds(const QString &name)
    {
        return QTest::qWaitFor(
            [&] {
                return m_heard.calls.contains(QString("+ " + name)) ||
                       m_heard.calls.contains(QString("+ " + name + "…"));
            },
            longEnough);
    }

    PrivateAvahi m_avahi;
    ServicesHeard m_heard;
    std::unique_ptr<NetServiceBrowser> m_browser;
};

void tst_RecorderPresence::initTestCase()
{
    QVERIFY(m_avahi.startBus());
    QVERIFY(m_avahi.startDaemon());
}

void tst_RecorderPresence::init()
{
    m_heard = ServicesHeard();
    m_browser = LinuxNetServices().makeBrowser();
    m_browser->setDelegate(&m_heard);
    m_browser->searchForServicesOfTypeInDomain("_http._tcp.", "local.");
}

void tst_RecorderPresence::cleanup()
{
    m_browser.reset();
    QVERIFY(m_avahi.startBus()); // nothing is announced any more
    QVERIFY(m_avahi.startDaemon());
}

void tst_RecorderPresence::recordersAreFoundAndServe()
{
    AnnouncedRecorder studio({.serviceName = "Vesk on Studio"});
    AnnouncedRecorder blue({.serviceName = "Blue Vesk on Küche"});
    for (AnnouncedRecorder *const recorder : {&studio, &blue}) {
        QTRY_COMPARE_WITH_TIMEOUT(recorder->announced.size(), 1, longEnough);
        const QString name = recorder->announced.front();
        QVERIFY(_finds(name));
        ResolutionHeard resolution;
        const auto service = m_heard.find(name);
        service->setDelegate(&resolution);
        service->resolveWithTimeout(resolveTimeout);
        QTRY_COMPARE_WITH_TIMEOUT(resolution.resolved, 1, longEnough);
        service->setDelegate(nullptr);
        QCOMPARE(resolution.port, static_cast<int>(recorder->recorder.port()));
        QCOMPARE(Curl::fetched(QString("http://127.0.0.1:%1/list.plist").arg(resolution.port)).status, 200);
    }
}

void tst_RecorderPresence::recorderThatLeavesIsWithdrawn()
{
    AnnouncedRecorder staying({.serviceName = "Vesk on Studio"});
    AnnouncedRecorder leaving({.serviceName = "Vesk on Stage"});
    QVERIFY(_finds("Vesk on Studio"));
    QVERIFY(_finds("Vesk on Stage"));
    leaving.recorder.setLeavesAtDownload(1);
    const QString address = leaving.recorder.address();
    QVERIFY(Curl::fetched(address + "/download?filename=take-000001&format=wav").exitCode != 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_heard.calls.filter("- "), QStringList{"- Vesk on Stage"}, longEnough);
}

void tst_RecorderPresence::recorderWithoutHostDoesNotResolve()
{
    AnnouncedRecorder recorder({.serviceName = "Vesk on Nowhere", .resolves = false});
    QVERIFY(_finds("Vesk on Nowhere"));
    ResolutionHeard resolution;
    const auto service = m_heard.find("Vesk on Nowhere");
    service->setDelegate(&resolution);
    service->resolveWithTimeout(500ms);
    QTRY_COMPARE_WITH_TIMEOUT(resolution.failed, 1, longEnough);
    service->setDelegate(nullptr);
}

void tst_RecorderPresence::takenNameIsChanged()
{
    AnnouncedRecorder first({.serviceName = "Vesk on Studio"});
    QTRY_COMPARE_WITH_TIMEOUT(first.announced.size(), 1, longEnough);
    AnnouncedRecorder second({.serviceName = "Vesk on Studio"});
    QTRY_COMPARE_WITH_TIMEOUT(second.announced.size(), 1, longEnough);
    QCOMPARE(second.announced.front(), QString("Vesk on Studio #2"));
}

void tst_RecorderPresence::printersAreOtherServices()
{
    AnnouncedRecorder recorder({.serviceName = "Vesk on Studio", .printers = 40});
    QVERIFY(_finds("Vesk on Studio"));
    for (int number = 1; number <= 40; ++number)
        QVERIFY(_finds(QString("Printer %1").arg(number)));
}

void tst_RecorderPresence::flappingComesAndGoes()
{
    AnnouncedRecorder recorder({.serviceName = "Vesk on Studio", .flaps = 1s});
    QTRY_VERIFY_WITH_TIMEOUT(m_heard.calls.filter("+ Vesk on Studio").size() > 1, longEnough);
    QVERIFY(!m_heard.calls.filter("- Vesk on Studio").isEmpty());
}

void tst_RecorderPresence::missingDaemonIsToldAndALaterOneIsUsed()
{
    m_avahi.killDaemon();
    AnnouncedRecorder recorder({.serviceName = "Vesk on Studio"});
    QTRY_COMPARE_WITH_TIMEOUT(recorder.failures, QStringList{"Daemon not running"}, longEnough);
    QVERIFY(m_avahi.startDaemon());
    QTRY_COMPARE_WITH_TIMEOUT(recorder.announced, QStringList{"Vesk on Studio"}, longEnough);
}

int main(int argc, char **argv)
{
    PrivateAvahi::enterPrivateNetwork();
    QCoreApplication application(argc, argv);
    tst_RecorderPresence test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_RecorderPresence.moc"
