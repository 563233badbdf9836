#include "GridMachine.h"
#include "GridMeddler.h"
#include "fakes/QWTestMain.h"

#include <semaphore>

/// The end of the remote, asked for or with the application.
class tst_GridShutdown : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shutdownClearsDrainsAndCloses();
    void nobodyHearsOfLaterGridsAfterShutdown();
    void shutdownOfNoGridKeepsTheObservers();
    void quittingShutsDown();
    void observerMayShutDownInAButtonCall();
    void shutdownWaitsForNoObserverThatWaitsForIt();
    void endWaitsForNoObserverThatWaitsForIt();
};

namespace
{
/// In a button call it waits for the main thread.
class WaitingListener : public GridMeddler
{
public:
    WaitingListener()
    {
        onButton = [this](QWMonomeRemote &) {
            m_isInside.release();
            QMetaObject::invokeMethod(
                qApp, [this] { wasHeard = true; }, Qt::BlockingQueuedConnection);
        };
    }

    /// Presses a button of @p machine until the call of it waits.
    void beCalled(GridMachine &machine)
    {
        machine.lines().feed(machine.lines().last(), QByteArray::fromHex("0035"));
        machine.clock().advance(std::chrono::milliseconds(1));
        m_isInside.acquire();
    }

    bool wasHeard = false;

private:
    std::binary_semaphore m_isInside{0};
};
} // namespace

void tst_GridShutdown::shutdownClearsDrainsAndCloses()
{
    GridMachine machine;
    GridListener listener;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.addObserver(listener);
    const int descriptor = machine.lines().last();
    remote.shutdown();
    QCOMPARE(machine.lines().takeWritten(descriptor), QByteArray::fromHex("90"));
    QCOMPARE(machine.lines().drained(), QList<int>{descriptor});
    QCOMPARE(machine.lines().closed(), QList<int>{descriptor});
    QVERIFY(!remote.isConnected());
    QVERIFY(!remote.hasObserver(listener));
    QVERIFY(listener.take().isEmpty());
    remote.shutdown(); // again: nothing
    QCOMPARE(machine.lines().closed().size(), 1);
}

void tst_GridShutdown::nobodyHearsOfLaterGridsAfterShutdown()
{
    GridMachine machine;
    GridListener listener;
    QWMonomeRemote &remote = machine.readyRemote();
    remote.shutdown();
    remote.addObserver(listener);
    QVERIFY(!remote.hasObserver(listener));
    machine.devices().plugIn(GridMachine::fortyH);
    QVERIFY(remote.isConnected());
    QVERIFY(listener.take().isEmpty());
}

void tst_GridShutdown::shutdownOfNoGridKeepsTheObservers()
{
    GridMachine machine("");
    GridListener listener;
    machine.remote().addObserver(listener);
    machine.remote().shutdown();
    QVERIFY(machine.remote().hasObserver(listener));
}

void tst_GridShutdown::quittingShutsDown()
{
    GridMachine machine;
    machine.readyRemote();
    const int descriptor = machine.lines().last();
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
    QApplication::exec();
    QVERIFY(!machine.remote().isConnected());
    QCOMPARE(machine.lines().closed(), QList<int>{descriptor});
}

void tst_GridShutdown::observerMayShutDownInAButtonCall()
{
    GridMachine machine;
    GridMeddler listener;
    QWMonomeRemote &remote = machine.readyRemote();
    listener.onButton = [](QWMonomeRemote &caller) { caller.shutdown(); };
    remote.addObserver(listener);
    machine.lines().feed(machine.lines().last(), QByteArray::fromHex("0035 0036"));
    machine.clock().advance(std::chrono::milliseconds(1));
    QTRY_VERIFY(!remote.isConnected());
    QVERIFY(machine.clock().waitForSleepers(1));
    QCOMPARE(listener.take(), QStringList{"down 3 5"});
    machine.clock().advance(std::chrono::milliseconds(1));
    QVERIFY(machine.clock().waitForSleepers(0)); // the reader has ended
}

void tst_GridShutdown::shutdownWaitsForNoObserverThatWaitsForIt()
{
    WaitingListener listener;
    GridMachine machine;
    machine.readyRemote().addObserver(listener);
    listener.beCalled(machine);
    machine.remote().shutdown();
    QVERIFY(!machine.remote().isConnected());
    QVERIFY(!listener.wasHeard);
    QTRY_VERIFY(listener.wasHeard);
}

void tst_GridShutdown::endWaitsForNoObserverThatWaitsForIt()
{
    WaitingListener listener;
    {
        GridMachine machine;
        machine.readyRemote().addObserver(listener);
        listener.beCalled(machine);
    }
    QVERIFY(listener.wasHeard);
}

QW_TEST_MAIN(tst_GridShutdown)
#include "tst_GridShutdown.moc"
