#include "RemoteControlTest.h"
#include "fakes/QWTestMain.h"

#include <QSignalSpy>

using platform::HidEvent;

/// Who hears what of the buttons, and for how long the receiver is held. One fake machine for each test.
class tst_QWRemoteControl : public RemoteControlTest
{
    Q_OBJECT

private Q_SLOTS:
    void thereIsOneRemoteControlAndItLeavesTheReceiverAlone();
    void receiverIsHeldWhileAnyoneListens();
    void listenerThatIsAddedTwiceIsOneListener();
    void removingAStrangerIsNoMistake();
    void strangersLeavingGivesNothingBackWhileOthersListen();
    void buttonsAreHeardByEveryListener();
    void elementsBecomeCalls_data();
    void elementsBecomeCalls();
    void listenerWithoutMethodsHearsNothing();
    void everythingInTheQueueIsTakenInOneGo();
    void failedResultTakesNothing();
    void failingQueueEndsTheDrainSilently();
    void longValueIsFreedAndSkipped();
    void onlyBothSizeAndPointerMakeALongValue();
    void listenerMayRemoveItselfDuringACall();
    void listenerMayRemoveAnotherDuringACall();
    void removedListenerMissesTheUpOfItsDown();
    void addedListenerHearsFromTheNextCallOn();
    void lastListenerMayLeaveDuringACall();
    void listenerMayLeaveAndComeBackDuringACall();
    void terminationForgetsListenersAndGivesTheReceiverBack();
    void quittingTerminates();
    void receiverIsGivenBackWhenTheRemoteControlGoes();
    void disconnectionIsLoggedAndSurvived();
    void nextNewListenerFindsAReconnectedReceiver();
    void disconnectionDuringACallIsSurvived();
};

void tst_QWRemoteControl::thereIsOneRemoteControlAndItLeavesTheReceiverAlone()
{
    QCOMPARE(&remote(), &QWRemoteControl::remoteControl());
    QCOMPARE(receiver().calls, QStringList());
    QVERIFY(!remote().isActive());
}

void tst_QWRemoteControl::receiverIsHeldWhileAnyoneListens()
{
    RemoteListener first;
    RemoteListener second;
    QVERIFY(remote().addListener(&first));
    QVERIFY(remote().addListener(&second));
    QVERIFY(remote().isActive());
    QVERIFY(remote().removeListener(&first));
    QVERIFY(receiver().isHeld());
    QVERIFY(!remote().hasListener(&first));
    QVERIFY(remote().hasListener(&second));

    receiver().calls.clear();
    QVERIFY(remote().removeListener(&second));
    QCOMPARE(receiver().calls, QStringList({"stop", "dispose", "close", "releaseInterface"}));
    QVERIFY(!receiver().isHeld());
    QVERIFY(!remote().isActive());

    QVERIFY(remote().addListener(&first));
    QVERIFY(remote().isActive());
}

void tst_QWRemoteControl::listenerThatIsAddedTwiceIsOneListener()
{
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QVERIFY(remote().addListener(&listener));
    QCOMPARE(receiver().calls.count("firstServiceMatching AppleIRController"), 1);
    receiver().send(29, 1);
    QCOMPARE(listener.heard, QStringList("down 2"));

    remote().removeListener(&listener);
    QVERIFY(!remote().hasListener(&listener));
    QVERIFY(!receiver().isHeld());
}

void tst_QWRemoteControl::removingAStrangerIsNoMistake()
{
    RemoteListener stranger;
    QVERIFY(remote().removeListener(&stranger));
    QCOMPARE(receiver().calls, QStringList());
}

void tst_QWRemoteControl::strangersLeavingGivesNothingBackWhileOthersListen()
{
    RemoteListener listener;
    RemoteListener stranger;
    remote().addListener(&listener);
    QVERIFY(remote().removeListener(&stranger));
    QVERIFY(remote().isActive());
    receiver().send(29, 0);
    QCOMPARE(listener.heard, QStringList("up 2"));
}

void tst_QWRemoteControl::buttonsAreHeardByEveryListener()
{
    RemoteListener first;
    RemoteListener second;
    remote().addListener(&first);
    remote().addListener(&second);
    receiver().send(22, 1);
    QCOMPARE(first.heard, QStringList({"down 5", "up 5"}));
    QCOMPARE(second.heard, first.heard);
    QCOMPARE(first.caller, &remote());
}

void tst_QWRemoteControl::elementsBecomeCalls_data()
{
    QTest::addColumn<int>("cookie");
    QTest::addColumn<int>("value");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("short press") << 20 << 1 << QStringList{"down 0", "up 0"};
    QTest::newRow("hold without an end") << 18 << 1 << QStringList{"down 0"};
    QTest::newRow("end of that hold") << 18 << 0 << QStringList();
    QTest::newRow("hold") << 3 << 1 << QStringList{"down 4"};
    QTest::newRow("end of hold") << 3 << 0 << QStringList{"up 4"};
    QTest::newRow("strange value") << 29 << 2 << QStringList();
    QTest::newRow("strange element") << 19 << 1 << QStringList();
}

void tst_QWRemoteControl::elementsBecomeCalls()
{
    QFETCH(const int, cookie);
    QFETCH(const int, value);
    QFETCH(const QStringList, expected);
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().send(quint32(cookie), value);
    QCOMPARE(listener.heard, expected);
}

void tst_QWRemoteControl::listenerWithoutMethodsHearsNothing()
{
    QWRemoteControlListener deaf;
    RemoteListener listener;
    remote().addListener(&deaf);
    remote().addListener(&listener);
    receiver().send(20, 1);
    QCOMPARE(listener.heard.size(), 2);
    remote().removeListener(&deaf);
}

void tst_QWRemoteControl::everythingInTheQueueIsTakenInOneGo()
{
    RemoteListener listener;
    remote().addListener(&listener);
    std::deque<HidEvent> events;
    QStringList expected;
    for (int i = 0; i < 30; ++i) {
        events.push_back({.elementCookie = 30, .value = i % 2});
        expected += i % 2 ? "down 3" : "up 3";
    }
    receiver().send(std::move(events));
    QCOMPARE(listener.heard, expected);
    QVERIFY(receiver().events.empty());
}

void tst_QWRemoteControl::failedResultTakesNothing()
{
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().events.push_back({.elementCookie = 29, .value = 1});
    receiver().callOut(-1);
    receiver().callOut(1);
    QCOMPARE(listener.heard, QStringList());
    QCOMPARE(receiver().events.size(), size_t(1));
    receiver().callOut(0);
    QCOMPARE(listener.heard, QStringList("down 2"));
}

void tst_QWRemoteControl::failingQueueEndsTheDrainSilently()
{
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().broken += "nextEvent";
    receiver().send(29, 1);
    QCOMPARE(listener.heard, QStringList());
    QCOMPARE(log(), QString());
    QVERIFY(remote().isActive());
}

void tst_QWRemoteControl::longValueIsFreedAndSkipped()
{
    RemoteListener listener;
    remote().addListener(&listener);
    auto longValue = std::make_shared<int>(7);
    const std::weak_ptr<int> watch = longValue;
    bool freedBeforeTheNext = false;
    listener.meanwhile = [&] { freedBeforeTheNext = watch.expired(); };
    std::deque<HidEvent> events;
    events.push_back({.elementCookie = 20, .value = 1, .longValueSize = 4, .longValue = std::move(longValue)});
    events.push_back({.elementCookie = 29, .value = 1});
    receiver().send(std::move(events));
    QCOMPARE(listener.heard, QStringList("down 2"));
    QVERIFY(freedBeforeTheNext);
}

void tst_QWRemoteControl::onlyBothSizeAndPointerMakeALongValue()
{
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().send(HidEvent{.elementCookie = 29, .value = 1, .longValueSize = 4});
    receiver().send(HidEvent{.elementCookie = 29, .value = 0, .longValue = std::make_shared<int>(7)});
    QCOMPARE(listener.heard, QStringList({"down 2", "up 2"}));
}

void tst_QWRemoteControl::listenerMayRemoveItselfDuringACall()
{
    RemoteListener leaving;
    RemoteListener staying;
    remote().addListener(&leaving);
    remote().addListener(&staying);
    leaving.meanwhile = [&] { remote().removeListener(&leaving); };
    receiver().send(29, 1);
    receiver().send(29, 0);
    QCOMPARE(leaving.heard, QStringList("down 2"));
    QCOMPARE(staying.heard, QStringList({"down 2", "up 2"}));
}

void tst_QWRemoteControl::listenerMayRemoveAnotherDuringACall()
{
    // Whoever is called first removes the other, which may be gone altogether by then.
    auto first = std::make_unique<RemoteListener>();
    auto second = std::make_unique<RemoteListener>();
    remote().addListener(first.get());
    remote().addListener(second.get());
    int calls = 0;
    first->meanwhile = [&] { ++calls, second.reset(); };
    second->meanwhile = [&] { ++calls, first.reset(); };
    receiver().send(29, 1);
    QCOMPARE(calls, 1);
    QVERIFY(bool(first) != bool(second));
    QVERIFY(remote().isActive());
}

void tst_QWRemoteControl::removedListenerMissesTheUpOfItsDown()
{
    RemoteListener leaving;
    RemoteListener staying;
    remote().addListener(&leaving);
    remote().addListener(&staying);
    leaving.meanwhile = [&] { remote().removeListener(&leaving); };
    receiver().send(20, 1);
    QCOMPARE(leaving.heard, QStringList("down 0"));
    QCOMPARE(staying.heard, QStringList({"down 0", "up 0"}));
}

void tst_QWRemoteControl::addedListenerHearsFromTheNextCallOn()
{
    RemoteListener listener;
    RemoteListener added;
    remote().addListener(&listener);
    listener.meanwhile = [&] { remote().addListener(&added); };
    receiver().send(20, 1);
    QCOMPARE(listener.heard, QStringList({"down 0", "up 0"}));
    QCOMPARE(added.heard, QStringList("up 0"));
}

void tst_QWRemoteControl::lastListenerMayLeaveDuringACall()
{
    RemoteListener listener;
    remote().addListener(&listener);
    listener.meanwhile = [&] { remote().removeListener(&listener); };
    receiver().send({{.elementCookie = 20, .value = 1}, {.elementCookie = 29, .value = 1}});
    QCOMPARE(listener.heard, QStringList("down 0"));
    QVERIFY(!receiver().isHeld());
    QVERIFY(!receiver().hasQueue());
    QCOMPARE(receiver().events.size(), size_t(1)); // nobody took it from the queue that had gone
}

void tst_QWRemoteControl::listenerMayLeaveAndComeBackDuringACall()
{
    RemoteListener listener;
    remote().addListener(&listener);
    listener.meanwhile = [&] {
        remote().removeListener(&listener);
        remote().addListener(&listener);
    };
    receiver().send(29, 1);
    listener.meanwhile = nullptr;
    receiver().send(29, 0);
    QCOMPARE(listener.heard, QStringList({"down 2", "up 2"}));
    QVERIFY(remote().isActive());
}

void tst_QWRemoteControl::terminationForgetsListenersAndGivesTheReceiverBack()
{
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().calls.clear();
    remote().applicationWillTerminate();
    QCOMPARE(receiver().calls, QStringList({"stop", "dispose", "close", "releaseInterface"}));
    QVERIFY(!remote().hasListener(&listener));
    QVERIFY(!remote().isActive());
    remote().applicationWillTerminate(); // nothing is left to release
    QCOMPARE(receiver().calls.size(), 4);
}

void tst_QWRemoteControl::quittingTerminates()
{
    RemoteListener listener;
    remote().addListener(&listener);
    const QSignalSpy quits(qApp, &QCoreApplication::aboutToQuit);
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    QCoreApplication::exec();
    QCOMPARE(quits.count(), 1);
    QVERIFY(!remote().hasListener(&listener));
    QVERIFY(!receiver().isHeld());
}

void tst_QWRemoteControl::receiverIsGivenBackWhenTheRemoteControlGoes()
{
    QWRemoteControlListener listener; // outlives the remote control
    remote().addListener(&listener);
    QVERIFY(receiver().isHeld());
    m_system->release<QWRemoteControl>();
    QVERIFY(!receiver().isHeld());
    QVERIFY(!receiver().hasQueue());
}

void tst_QWRemoteControl::disconnectionIsLoggedAndSurvived()
{
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().remove();
    QVERIFY(log().contains(" warning [QWRemoteControl] The remote was disconnected ("));
    QCOMPARE(log().count('\n'), 1);
    QVERIFY(!remote().isActive());
    QVERIFY(!receiver().isHeld());
    QVERIFY(remote().hasListener(&listener));
    QVERIFY(remote().removeListener(&listener));
}

void tst_QWRemoteControl::nextNewListenerFindsAReconnectedReceiver()
{
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().remove();
    remote().addListener(&listener); // is not new
    QVERIFY(!remote().isActive());
    RemoteListener added;
    remote().addListener(&added);
    QVERIFY(remote().isActive());
    receiver().send(4, 1);
    QCOMPARE(listener.heard, QStringList("down 5"));
    QCOMPARE(added.heard, QStringList("down 5"));
}

void tst_QWRemoteControl::disconnectionDuringACallIsSurvived()
{
    RemoteListener listener;
    remote().addListener(&listener);
    listener.meanwhile = [&] { receiver().remove(); };
    receiver().send({{.elementCookie = 29, .value = 1}, {.elementCookie = 29, .value = 0}});
    QCOMPARE(listener.heard, QStringList("down 2"));
    QVERIFY(!remote().isActive());
}

QW_TEST_MAIN(tst_QWRemoteControl)
#include "tst_QWRemoteControl.moc"
