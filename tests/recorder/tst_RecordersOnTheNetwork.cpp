#include "BrowserDriver.h"
#include "NetworkedMachine.h"

#include <QWUtilities/recorder/QWVeskBrowser.h>
#include <fakes/QWTestMain.h>
#include <network/PrivateAvahi.h>
#include <simulators/recorder/RecorderPresence.h>
#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

using namespace platform;

namespace
{
/// A recorder that is announced.
class AnnouncedTakes
{
public:
    AnnouncedTakes(const RecorderPresenceSettings &settings, int takes, bool isBlue = false)
    {
        recorder.setTakes(MadeUpTakes::takes({.count = takes, .length = 0.5}));
        recorder.setList({.isBlue = isBlue, .isBinary = false, .faults = {}});
        if (!recorder.listen())
            qFatal("Cannot listen");
        m_presence.emplace(recorder, settings);
    }

    RecorderSimulator recorder{QString()};

private:
    std::optional<RecorderPresence> m_presence;
};
} // namespace

/// The window of recorders in a network of the test's own, where a real Avahi daemon tells who is there.
class tst_RecordersOnTheNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void recordersComeAndGo();
    void printersAreNoRecorders();
    void recorderThatFlapsEndsAsItStays();
    void withoutDaemonTheWindowSaysSo();

private:
    void _open()
    {
        m_machine = std::make_unique<NetworkedMachine>(QString());
        QWVeskBrowser::openWindow();
    }
    bool _shows(QStringList names)
    {
        names.sort();
        return m_user.until([&] {
            QStringList shown = m_user.deviceNames();
            shown.sort();
            return shown == names;
        });
    }
    bool _select(const QString &name)
    {
        const auto row = m_user.deviceNames().indexOf(name);
        m_user.selectDevice(static_cast<int>(row));
        return row >= 0;
    }

    PrivateAvahi m_avahi;
    std::unique_ptr<NetworkedMachine> m_machine;
    BrowserDriver m_user;
};

void tst_RecordersOnTheNetwork::initTestCase()
{
    QVERIFY(m_avahi.startBus());
    QVERIFY(m_avahi.startDaemon());
}

void tst_RecordersOnTheNetwork::cleanup()
{
    m_machine.reset();
    QVERIFY(m_avahi.startBus()); // nothing is announced any more
    QVERIFY(m_avahi.startDaemon());
}

void tst_RecordersOnTheNetwork::recordersComeAndGo()
{
    AnnouncedTakes studio({.serviceName = "Vesk on Studio"}, 4);
    AnnouncedTakes blue({.serviceName = "Blue Vesk on Kitchen"}, 5, true);
    AnnouncedTakes nowhere({.serviceName = "Vesk on Nowhere", .resolves = false}, 6);
    std::optional<AnnouncedTakes> stage;
    stage.emplace(RecorderPresenceSettings{.serviceName = "Vesk on Stage"}, 7);
    _open();
    QVERIFY(_shows({"Studio", "Kitchen", "Nowhere", "Stage"}));

    QVERIFY(_select("Studio"));
    QVERIFY(m_user.listsTakes(4));
    QVERIFY(m_user.chooseFormat("FLAC"));
    QVERIFY(_select("Kitchen"));
    QVERIFY(m_user.listsTakes(5));
    QCOMPARE(m_user.formats()->count(), 3);
    QCOMPARE(m_user.formats()->currentText(), QString("AIFF"));
    QVERIFY(_select("Nowhere"));
    QVERIFY(m_user.listsTakes(0));
    QVERIFY(_select("Stage"));
    QVERIFY(m_user.listsTakes(7));

    stage->recorder.leave();
    QVERIFY(_shows({"Studio", "Kitchen", "Nowhere"}));
    QVERIFY(m_user.until([this] { return m_user.devices()->currentIndex().isValid(); }));
    AnnouncedTakes late({.serviceName = "Vesk on Attic"}, 3);
    QVERIFY(_shows({"Studio", "Kitchen", "Nowhere", "Attic"}));
}

void tst_RecordersOnTheNetwork::printersAreNoRecorders()
{
    AnnouncedTakes studio({.serviceName = "Vesk on Studio", .printers = 100}, 4);
    _open();
    QVERIFY(m_user.listsTakes(4));
    QCOMPARE(m_user.deviceNames(), QStringList("Studio"));
}

void tst_RecordersOnTheNetwork::recorderThatFlapsEndsAsItStays()
{
    std::optional<AnnouncedTakes> studio;
    studio.emplace(RecorderPresenceSettings{.serviceName = "Vesk on Studio", .flaps = std::chrono::milliseconds(1500)},
                   4);
    _open();
    for (int turn = 0; turn < 2; ++turn) {
        QVERIFY(_shows({"Studio"}));
        QVERIFY(_shows({}));
    }
    studio.emplace(RecorderPresenceSettings{.serviceName = "Vesk on Stage"}, 5);
    QVERIFY(_shows({"Stage"}));
    QVERIFY(m_user.listsTakes(5));
}

void tst_RecordersOnTheNetwork::withoutDaemonTheWindowSaysSo()
{
    m_avahi.killDaemon();
    _open();
    QVERIFY(m_user.until([this] { return m_user.window(); }));
    QVERIFY(_shows({}));
    QVERIFY(m_avahi.startDaemon());
    AnnouncedTakes studio({.serviceName = "Vesk on Studio"}, 4);
    QTest::keyClick(m_user.window(), Qt::Key_R, Qt::ControlModifier); // looks anew
    QVERIFY(m_user.listsTakes(4));
}

int main(int argc, char **argv)
{
    PrivateAvahi::enterPrivateNetwork();
    QWApplication application(argc, argv);
    tst_RecordersOnTheNetwork test;
    return qwtest::run(test, argc, argv);
}

#include "tst_RecordersOnTheNetwork.moc"
