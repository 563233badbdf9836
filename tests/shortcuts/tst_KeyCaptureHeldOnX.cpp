#include "CaptureSheetHost.h"
#include "XServer.h"

#include <QWBase/QWApplication.h>

using namespace std::chrono_literals;

namespace
{
/// Counts what an application sees of keys that repeat.
class RepeatCounter : public QObject
{
public:
    RepeatCounter() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        releases += event->type() == QEvent::KeyRelease;
        return false;
    }

    int releases = 0;
};
} // namespace

/// A real key of an X server, which repeats while it is held.
class tst_KeyCaptureHeldOnX : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void heldKeyIsSetOnceAndFiresNothing();
    void escapeTwiceLeaves();
};

void tst_KeyCaptureHeldOnX::heldKeyIsSetOnceAndFiresNothing()
{
    CaptureSheetHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    RepeatCounter counter;
    QVERIFY(XServer::act({"keydown", "k"}));
    QTRY_COMPARE(host.shown->text(), QString("K"));
    QTRY_VERIFY(counter.releases > 5); // it repeats
    host.system.clock.advance(900ms);
    QTRY_VERIFY(counter.releases > 10);
    QCOMPARE(host.at(0, 0)->key(), QWShortcutKey('p', 0));
    host.system.clock.advance(100ms);
    QTRY_COMPARE(host.at(0, 0)->key(), QWShortcutKey('k', 0));
    const int before = counter.releases;
    QTRY_VERIFY(counter.releases > before + 5);
    QVERIFY(host.sheet()->isVisible());
    QVERIFY(XServer::act({"keyup", "k"}));
    const auto letGo = [&] {
        host.system.clock.advance(10ms);
        return !host.sheet()->isVisible();
    };
    QVERIFY(QTest::qWaitFor(letGo));
    QCOMPARE(host.receiver.sent, QStringList());
    QVERIFY(host.becomesKey(*host.window()));
    QVERIFY(XServer::act({"key", "k"}));
    QTRY_COMPARE(host.receiver.sent, QStringList{"play 1"});
}

void tst_KeyCaptureHeldOnX::escapeTwiceLeaves()
{
    CaptureSheetHost host;
    QVERIFY(host.isOpen && host.edit(0, 0));
    QVERIFY(XServer::act({"key", "Escape"}));
    QTRY_COMPARE(host.outro->text(), host.reserved);
    QVERIFY(XServer::act({"key", "Escape"}));
    QTRY_VERIFY(!host.sheet()->isVisible());
    QVERIFY(host.window()->isVisible());
}

int main(int argc, char **argv)
{
    const XServer server;
    if (!server.isRunning())
        qFatal("Xvfb does not start");
    QWApplication application(argc, argv);
    tst_KeyCaptureHeldOnX test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KeyCaptureHeldOnX.moc"
