#include "SocketReceiver.h"

#include <QWPlatform/linux/remote/LinuxRemoteReceiver.h>

#include <QTest>

#include <thread>

/// The queue of the receiver by itself: what it keeps, what it drops, and when it calls out.
class tst_LinuxRemoteReceiverQueue : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void eventHoldsElementValueAndTime();
    void fullQueueDropsWhatComes();
    void onlyAddedElementsAreKept();
    void eventsWithoutMeaningCallNobody();
    void stoppedQueueReadsNothing();
    void queueOutlivesItsInterfaceAndPlugin();
    void goneDeviceIsToldOnce();
    void queueWithoutRoomOrCallbackFails();
    void threadWithoutEventLoopHasNoEventSource();

private:
    /// Sets the queue up for @p depth events of the elements 29 and 30 and starts it.
    void _start(int depth = 30);

    static void _count(void *, qint32, void *counter, void *) { ++*static_cast<int *>(counter); }

    std::shared_ptr<SocketReceiver> m_device;
    std::unique_ptr<platform::HidInterface> m_interface;
    std::unique_ptr<platform::HidQueue> m_queue;
    int m_callouts = 0;
    int m_removals = 0;
};

void tst_LinuxRemoteReceiverQueue::init()
{
    m_device = std::make_shared<SocketReceiver>();
    platform::LinuxRemoteReceiver receiver("/nowhere", "/nowhere", m_device);
    m_interface = receiver.createPlugin("receiver")->queryInterface();
    m_interface->setRemovalCallback(&_count, nullptr, &m_removals);
    m_queue = m_interface->allocateQueue();
    m_callouts = 0;
    m_removals = 0;
}

void tst_LinuxRemoteReceiverQueue::cleanup()
{
    m_queue.reset();
    m_interface.reset();
    QCOMPARE(m_device->openDescriptors, 0);
}

void tst_LinuxRemoteReceiverQueue::_start(int depth)
{
    QVERIFY(m_queue->create(depth));
    QVERIFY(m_queue->addElement(29));
    QVERIFY(m_queue->addElement(30));
    QVERIFY(m_queue->createAsyncEventSource());
    QVERIFY(m_queue->setEventCallout(&_count, nullptr, &m_callouts));
    m_queue->addSourceToRunLoop();
    QVERIFY(!m_queue->isStarted());
    QVERIFY(m_queue->start());
    QVERIFY(m_queue->isStarted());
}

void tst_LinuxRemoteReceiverQueue::eventHoldsElementValueAndTime()
{
    _start();
    m_device->write(SocketReceiver::event(EV_KEY, KEY_VOLUMEUP, 1, 1'500'000));
    QTRY_COMPARE(m_callouts, 1);
    const auto event = m_queue->nextEvent();
    QVERIFY(event);
    QCOMPARE(event->elementCookie, 29u);
    QCOMPARE(event->value, 1);
    QCOMPARE(event->timeStamp, quint64(1'500'000));
    QCOMPARE(event->longValueSize, 0u);
    QVERIFY(!event->longValue);
}

void tst_LinuxRemoteReceiverQueue::fullQueueDropsWhatComes()
{
    _start(2);
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1) + SocketReceiver::key(KEY_VOLUMEUP, 0) +
                    SocketReceiver::key(KEY_VOLUMEDOWN, 1));
    QTRY_COMPARE(m_callouts, 1);
    QCOMPARE(m_queue->nextEvent()->value, 1);
    QCOMPARE(m_queue->nextEvent()->value, 0);
    QVERIFY(!m_queue->nextEvent());

    m_device->write(SocketReceiver::key(KEY_VOLUMEDOWN, 0));
    QTRY_COMPARE(m_callouts, 2); // there is room again
    QCOMPARE(m_queue->nextEvent()->elementCookie, 30u);
}

void tst_LinuxRemoteReceiverQueue::onlyAddedElementsAreKept()
{
    _start();
    m_device->write(SocketReceiver::key(KEY_MENU, 1) + SocketReceiver::key(KEY_MENU, 0) +
                    SocketReceiver::key(KEY_VOLUMEDOWN, 1));
    QTRY_COMPARE(m_callouts, 1);
    QCOMPARE(m_queue->nextEvent()->elementCookie, 30u);
    QVERIFY(!m_queue->nextEvent());
}

void tst_LinuxRemoteReceiverQueue::eventsWithoutMeaningCallNobody()
{
    _start();
    m_device->write(SocketReceiver::key(KEY_A, 1) + SocketReceiver::key(KEY_VOLUMEUP, 2));
    QTRY_COMPARE(m_device->reads, 1);
    QCOMPARE(m_callouts, 0);
}

void tst_LinuxRemoteReceiverQueue::stoppedQueueReadsNothing()
{
    _start();
    m_queue->stop();
    m_queue->stop();
    QVERIFY(!m_queue->isStarted());
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1));
    QCoreApplication::processEvents();
    QCOMPARE(m_device->reads, 0);
    QVERIFY(!m_queue->nextEvent());
}

void tst_LinuxRemoteReceiverQueue::queueOutlivesItsInterfaceAndPlugin()
{
    m_interface->openExclusively();
    _start();
    m_interface.reset();
    QVERIFY(!m_device->isGrabbed);
    QCOMPARE(m_device->openDescriptors, 1);
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1));
    QTRY_COMPARE(m_callouts, 1);
}

void tst_LinuxRemoteReceiverQueue::goneDeviceIsToldOnce()
{
    _start();
    m_device->write(SocketReceiver::key(KEY_VOLUMEUP, 1));
    m_device->unplug();
    QTRY_COMPARE(m_removals, 1);
    QVERIFY(!m_queue->isStarted());
    QCOMPARE(m_queue->nextEvent()->value, 1);
    QCOMPARE(m_queue->nextEvent()->value, 0); // a button that was down goes up
    QCoreApplication::processEvents();
    QCOMPARE(m_removals, 1);
    QCOMPARE(m_device->reads, 2); // an end of input is readable for ever, and read once
}

void tst_LinuxRemoteReceiverQueue::queueWithoutRoomOrCallbackFails()
{
    QVERIFY(!m_queue->create(0));
    QVERIFY(!m_queue->create(-1));
    QVERIFY(!m_queue->setEventCallout(nullptr, nullptr, nullptr));
    m_queue->stop(); // never started
    QVERIFY(!m_queue->isStarted());
}

void tst_LinuxRemoteReceiverQueue::threadWithoutEventLoopHasNoEventSource()
{
    bool hasSource = true;
    std::thread([&] { hasSource = m_interface->allocateQueue()->createAsyncEventSource(); }).join();
    QVERIFY(!hasSource);
}

QTEST_GUILESS_MAIN(tst_LinuxRemoteReceiverQueue)
#include "tst_LinuxRemoteReceiverQueue.moc"
