#include "controllers/GridMachine.h"
#include "fakes/QWTestMain.h"

#include "app/ControllerActions.h"
#include "app/HostSettings.h"
#include "preferences/GridMonitor.h"
#include "views/Viewport.h"

#include <QWPlatform/foundation/UserDefaults.h>

using namespace demo;

/// What a grid does in the host: a column is a place in the sound, and its light follows the play head.
class tst_HostGrid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lightsUpWhenTheGridsOwnShowIsOver();
    void lightFollowsThePlayHead();
    void columnsBeyondSevenAreLitAndHeardToo();
    void intensityFollowsTheSettingAtOnce();
    void gridThatIsNotUsedIsDarkAndDeaf();
    void monitorShowsWhatIsHeld();
    void monitorForgetsAGridThatGoes();
    void clickInTheMonitorSwitchesALight();
};

namespace
{
/// Two seconds of sound, and the settings at half the light.
struct GridHost
{
    GridMachine machine;
    Viewport viewport;
    std::unique_ptr<ControllerActions> actions;

    explicit GridHost(const QString &path = GridMachine::series64)
        : machine(path)
    {
        HostSettings::registerDefaults();
        set(HostSettings::gridIntensityKey, 50);
        viewport.setDuration(2);
        viewport.showAll();
        actions = std::make_unique<ControllerActions>(viewport);
        actions->applySettings();
        machine.readyRemote();
    }

    void set(const QString &key, const QVariant &value) { machine.system.userDefaults().setObject(key, value); }
    QByteArray written() { return machine.lines().takeWritten(machine.lines().last()); }

    /// Whether the host has lit up after the show.
    bool isReady()
    {
        QByteArray all;
        return QTest::qWaitFor([&] { return (all += written()).contains('\xa7'); }, 20'000) &&
               machine.remote().LEDStateAtPosition({0, 0});
    }
};

/// The first row of a quadrant in the frame that was written last.
quint8 lastRow(const QByteArray &written, int quadrant)
{
    return static_cast<quint8>(written.right(36).at(quadrant * 9 + 1));
}
} // namespace

void tst_HostGrid::lightsUpWhenTheGridsOwnShowIsOver()
{
    GridHost host;
    QVERIFY(!host.machine.remote().LEDStateAtPosition({0, 0})); // the show has put it out
    QCOMPARE(host.machine.remote().intensity(), 1.0f);
    QVERIFY(host.isReady());
    QCOMPARE(host.machine.remote().intensity(), 0.5f);
}

void tst_HostGrid::lightFollowsThePlayHead()
{
    GridHost host;
    QVERIFY(host.isReady());
    host.written();
    QVERIFY(host.machine.receive(QByteArray::fromHex("0050")));
    QTRY_COMPARE(host.viewport.position(), 1.25);
    QCOMPARE(lastRow(host.written(), 0), 0x20);
    host.viewport.setVisible({1, 2});
    QCOMPARE(lastRow(host.written(), 0), 0x04);
    host.viewport.setPosition(2);
    QCOMPARE(lastRow(host.written(), 0), 0x80);
}

void tst_HostGrid::columnsBeyondSevenAreLitAndHeardToo()
{
    GridHost host(GridMachine::series128);
    QVERIFY(host.isReady());
    host.written();
    QVERIFY(host.machine.receive(QByteArray::fromHex("00c1")));
    QTRY_COMPARE(host.viewport.position(), 1.5);
    QByteArray frame = host.written();
    QCOMPARE(lastRow(frame, 0), 0);
    QCOMPARE(lastRow(frame, 1), 0x10);
    host.viewport.setPosition(0.5);
    frame = host.written();
    QCOMPARE(lastRow(frame, 0), 0x10);
    QCOMPARE(lastRow(frame, 1), 0);
}

void tst_HostGrid::intensityFollowsTheSettingAtOnce()
{
    GridHost host;
    QVERIFY(host.isReady());
    host.set(HostSettings::gridIntensityKey, 20);
    host.actions->applySettings();
    QVERIFY(host.written().contains('\xa3'));
    host.set(HostSettings::gridIntensityKey, "bright");
    host.actions->applySettings();
    QVERIFY(host.written().contains('\xa0'));
}

void tst_HostGrid::gridThatIsNotUsedIsDarkAndDeaf()
{
    GridHost host;
    QVERIFY(host.isReady());
    host.set(HostSettings::gridKey, false);
    host.actions->applySettings();
    QVERIFY(!host.machine.remote().LEDStateAtPosition({0, 0}));
    QVERIFY(host.written().endsWith('\x90'));
    QVERIFY(host.machine.receive(QByteArray::fromHex("0050")));
    QCoreApplication::processEvents();
    QCOMPARE(host.viewport.position(), 0.0);
    host.viewport.setPosition(1);
    QVERIFY(host.written().isEmpty());
}

void tst_HostGrid::monitorShowsWhatIsHeld()
{
    GridHost host(GridMachine::series128);
    GridMonitor monitor;
    monitor.show();
    QVERIFY(host.machine.receive(QByteArray::fromHex("0035 00c1")));
    QTRY_VERIFY(monitor.isHeld({3, 5}) && monitor.isHeld({12, 1}));
    QVERIFY(host.machine.receive(QByteArray::fromHex("1035 10c1")));
    QTRY_VERIFY(!monitor.isHeld({3, 5}) && !monitor.isHeld({12, 1}));
}

void tst_HostGrid::monitorForgetsAGridThatGoes()
{
    GridHost host;
    GridMonitor monitor;
    monitor.show();
    QVERIFY(host.machine.receive(QByteArray::fromHex("0035")));
    QTRY_VERIFY(monitor.isHeld({3, 5}));
    host.machine.devices().unplug(GridMachine::series64);
    QTRY_VERIFY(!monitor.isHeld({3, 5}));
}

void tst_HostGrid::clickInTheMonitorSwitchesALight()
{
    GridHost host;
    GridMonitor monitor;
    monitor.resize(monitor.sizeHint());
    monitor.show();
    const QPoint third(monitor.height() / 8 * 2 + 5, monitor.height() / 8 + 5);
    QTest::mouseClick(&monitor, Qt::LeftButton, {}, third);
    QVERIFY(host.machine.remote().LEDStateAtPosition({2, 1}));
    QTest::mouseClick(&monitor, Qt::LeftButton, {}, third);
    QVERIFY(!host.machine.remote().LEDStateAtPosition({2, 1}));
}

QW_TEST_MAIN(tst_HostGrid)
#include "tst_HostGrid.moc"
