#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include "app/ControllerActions.h"
#include "app/HostSettings.h"
#include "preferences/RemoteMonitor.h"
#include "views/Viewport.h"

#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <memory>

using namespace demo;

namespace
{
/// Takes the actions that the remote's buttons send.
class Receiver : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void openPreferences(QObject *sender) { _note("openPreferences", sender); }
    Q_INVOKABLE void togglePlayback(QObject *sender) { _note("togglePlayback", sender); }
    Q_INVOKABLE void zoom(QObject *sender) { _note("zoom", sender); }
    Q_INVOKABLE void movePosition(QObject *sender) { _note("movePosition", sender); }

    QStringList heard;

private:
    void _note(const QString &action, const QObject *sender)
    {
        heard += action + ' ' + sender->property("tag").toString();
    }
};

/// A host with a receiver, which the user lets it use.
struct RemoteHost
{
    FakeSystem system;
    platform::SystemScope scope{system};
    Viewport viewport;
    Receiver receiver;
    std::unique_ptr<ControllerActions> actions;

    RemoteHost()
    {
        HostSettings::registerDefaults();
        platform::setDelegate(qApp, &receiver);
        actions = std::make_unique<ControllerActions>(viewport);
        use(true);
    }

    void use(bool use)
    {
        system.userDefaults().setObject(HostSettings::remoteKey, use);
        actions->applySettings();
    }
};
} // namespace

/// What the infrared remote does in the host.
class tst_HostRemote : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buttonsSendTheirActions_data();
    void buttonsSendTheirActions();
    void receiverIsHeldWhileItIsWanted();
    void monitorNamesTheButton();
    void monitorTellsWhetherThereIsAReceiver();
};

void tst_HostRemote::buttonsSendTheirActions_data()
{
    QTest::addColumn<quint32>("cookie");
    QTest::addColumn<QString>("action");
    QTest::newRow("menu") << 20u << "openPreferences 0";
    QTest::newRow("play") << 21u << "togglePlayback 0";
    QTest::newRow("plus") << 29u << "zoom 1";
    QTest::newRow("minus") << 30u << "zoom -1";
    QTest::newRow("back") << 23u << "movePosition -10";
    QTest::newRow("next") << 22u << "movePosition 10";
}

void tst_HostRemote::buttonsSendTheirActions()
{
    QFETCH(quint32, cookie);
    QFETCH(QString, action);
    RemoteHost host;
    host.system.remoteReceiver.send(cookie, 1);
    QCOMPARE(host.receiver.heard, QStringList{action});
}

void tst_HostRemote::receiverIsHeldWhileItIsWanted()
{
    RemoteHost host;
    QVERIFY(host.system.remoteReceiver.isHeld());
    host.use(false);
    QVERIFY(!host.system.remoteReceiver.isHeld());
    host.use(true);
    host.actions.reset();
    QVERIFY(!host.system.remoteReceiver.isHeld());
}

void tst_HostRemote::monitorNamesTheButton()
{
    RemoteHost host;
    RemoteMonitor monitor;
    monitor.show();
    QCOMPARE(monitor.accessibleDescription(), "Press a button of the remote.");
    const QImage before = monitor.grab().toImage();
    host.system.remoteReceiver.send(21, 1);
    QCOMPARE(monitor.accessibleDescription(), "Play");
    QVERIFY(monitor.grab().toImage() != before);
    QTRY_COMPARE(monitor.grab().toImage(), before);
}

void tst_HostRemote::monitorTellsWhetherThereIsAReceiver()
{
    RemoteHost host;
    RemoteMonitor monitor;
    monitor.show();
    host.system.remoteReceiver.remove();
    QTRY_COMPARE(monitor.accessibleDescription(), "No infrared receiver is connected.");
}

QW_TEST_MAIN(tst_HostRemote)
#include "tst_HostRemote.moc"
