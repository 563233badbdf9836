#include "RemoteControlTest.h"
#include "fakes/QWTestMain.h"

#include <QRegularExpression>

namespace
{
/// Every step in order, as far as the first listener takes it.
const QStringList allSteps{"firstServiceMatching AppleIRController",
                           "createPlugin receiver",
                           "queryInterface",
                           "openExclusively",
                           "copyMatchingElements",
                           "allocateQueue",
                           "create 30",
                           "addElement 20",
                           "addElement 18",
                           "createAsyncEventSource",
                           "setEventCallout",
                           "addSourceToRunLoop",
                           "releasePlugin",
                           "start"};
} // namespace

/// Setting the receiver up: the order of the steps, and what each one's failure says and leaves.
class tst_QWRemoteControlSetup : public RemoteControlTest
{
    Q_OBJECT

private Q_SLOTS:
    void stepsComeInOrder();
    void failingStepSaysSoAndEndsTheSetup_data();
    void failingStepSaysSoAndEndsTheSetup();
    void nextNewListenerTriesAgainUnlessThereIsAQueue_data();
    void nextNewListenerTriesAgainUnlessThereIsAQueue();
    void listenerThatIsThereAlreadyDoesNotTryAgain();
    void lastListenerTakesAHalfMadeQueueAlong();
    void receiverThatCannotBeHeldIsClosed();
    void interfaceOfAFailedAttemptIsKeptUntilTheNext();
    void elementsOfStrangeShapeAreMissing_data();
    void elementsOfStrangeShapeAreMissing();
    void firstElementThatCannotBeAddedEndsTheSetup();
    void cookieThatIsNoNumberCannotBeAdded();
    void deviceWithoutChildElementsIsListenedTo();
    void warningTellsWhereItComesFrom();

private:
    /// The texts of the warnings so far.
    QStringList _warnings() const;
};

QStringList tst_QWRemoteControlSetup::_warnings() const
{
    static const QRegularExpression form(
        "^\\S+ \\S+ warning \\[QWRemoteControl\\] (.*) \\(-\\[QWRemoteControl _initQueue\\], ",
        QRegularExpression::MultilineOption);
    QStringList texts;
    const QString text = log();
    for (auto match = form.globalMatch(text); match.hasNext();)
        texts += match.next().captured(1);
    return texts;
}

void tst_QWRemoteControlSetup::stepsComeInOrder()
{
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QCOMPARE(receiver().calls, allSteps);
    QCOMPARE(log(), QString());
}

void tst_QWRemoteControlSetup::failingStepSaysSoAndEndsTheSetup_data()
{
    QTest::addColumn<QString>("warning");
    QTest::newRow("firstServiceMatching") << "Finding the AppleIRController service failed";
    QTest::newRow("createPlugin") << "Creating the plugin for the remote failed";
    QTest::newRow("queryInterface") << QString();
    QTest::newRow("openExclusively") << "Attempting to sieze the remote failed";
    QTest::newRow("copyMatchingElements") << "Retrieving the remote interface elements failed";
    QTest::newRow("allocateQueue") << "Creating the remote queue failed";
    QTest::newRow("create") << "Creating the remote queue failed";
    QTest::newRow("addElement") << "Adding elements to the remote queue failed";
    QTest::newRow("createAsyncEventSource") << "Creating the event source for the remote failed";
    QTest::newRow("setEventCallout") << "Setting the remote event callback failed";
    QTest::newRow("start") << "Starting the queue failed";
}

void tst_QWRemoteControlSetup::failingStepSaysSoAndEndsTheSetup()
{
    QFETCH(const QString, warning);
    const QString step = QTest::currentDataTag();
    receiver().broken += step;
    RemoteListener listener;
    QVERIFY(remote().addListener(&listener));
    QVERIFY(remote().hasListener(&listener));
    QVERIFY(!remote().isActive());
    QCOMPARE(_warnings(), warning.isEmpty() ? QStringList() : QStringList(warning));

    QStringList steps = receiver().calls.filter(QRegularExpression("^(?!release|close)"));
    QCOMPARE(steps.last().section(' ', 0, 0), step);
    QCOMPARE(steps, QStringList(allSteps).filter(QRegularExpression("^(?!release)")).mid(0, steps.size()));
}

void tst_QWRemoteControlSetup::nextNewListenerTriesAgainUnlessThereIsAQueue_data()
{
    QTest::addColumn<bool>("triesAgain");
    for (const char *const step : {"firstServiceMatching", "createPlugin", "queryInterface", "openExclusively",
                                   "copyMatchingElements", "allocateQueue"})
        QTest::newRow(step) << true;
    for (const char *const step : {"create", "addElement", "createAsyncEventSource", "setEventCallout", "start"})
        QTest::newRow(step) << false;
}

void tst_QWRemoteControlSetup::nextNewListenerTriesAgainUnlessThereIsAQueue()
{
    QFETCH(const bool, triesAgain);
    receiver().broken += QTest::currentDataTag();
    RemoteListener first;
    remote().addListener(&first);
    QCOMPARE(receiver().hasQueue(), !triesAgain);

    receiver().broken.clear();
    RemoteListener second;
    QVERIFY(remote().addListener(&second));
    QCOMPARE(remote().isActive(), triesAgain);
    QCOMPARE(receiver().calls.count(allSteps.first()), triesAgain ? 2 : 1);
}

void tst_QWRemoteControlSetup::listenerThatIsThereAlreadyDoesNotTryAgain()
{
    receiver().broken += "firstServiceMatching";
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().broken.clear();
    QVERIFY(remote().addListener(&listener));
    QCOMPARE(receiver().calls, QStringList(allSteps.first()));
}

void tst_QWRemoteControlSetup::lastListenerTakesAHalfMadeQueueAlong()
{
    receiver().broken += "start";
    RemoteListener listener;
    remote().addListener(&listener);
    receiver().calls.clear();
    remote().removeListener(&listener);
    QCOMPARE(receiver().calls, QStringList({"stop", "dispose", "close", "releaseInterface"}));

    receiver().broken.clear();
    remote().addListener(&listener);
    QVERIFY(remote().isActive());
}

void tst_QWRemoteControlSetup::receiverThatCannotBeHeldIsClosed()
{
    receiver().broken += "openExclusively";
    RemoteListener listener;
    remote().addListener(&listener);
    QCOMPARE(receiver().calls.mid(3), QStringList({"openExclusively", "close", "releaseInterface", "releasePlugin"}));
}

void tst_QWRemoteControlSetup::interfaceOfAFailedAttemptIsKeptUntilTheNext()
{
    receiver().broken += "copyMatchingElements";
    RemoteListener first;
    remote().addListener(&first);
    QVERIFY(receiver().isHeld());
    remote().removeListener(&first); // without a queue nothing is torn down
    QVERIFY(receiver().isHeld());

    receiver().broken.clear();
    remote().addListener(&first);
    QVERIFY(remote().isActive());
    remote().removeListener(&first);
    QVERIFY(!receiver().isHeld());

    receiver().broken += "copyMatchingElements";
    remote().addListener(&first);
    remote().applicationWillTerminate();
    QVERIFY(!receiver().isHeld());
}

void tst_QWRemoteControlSetup::elementsOfStrangeShapeAreMissing_data()
{
    QTest::addColumn<QVariantList>("elements");
    QTest::newRow("no element") << QVariantList();
    QTest::newRow("no dictionary") << QVariantList{7};
    QTest::newRow("no child elements") << QVariantList{QVariantMap{{"Usage", 1}}};
    QTest::newRow("child elements are no array") << QVariantList{QVariantMap{{"Elements", "20"}}};
    QTest::newRow("child elements of the second only")
        << QVariantList{QVariantMap(), FakeRemoteReceiver::elementsWithCookies({20}).first()};
}

void tst_QWRemoteControlSetup::elementsOfStrangeShapeAreMissing()
{
    QFETCH(const QVariantList, elements);
    receiver().elements = elements;
    RemoteListener listener;
    remote().addListener(&listener);
    QCOMPARE(_warnings(), QStringList("Retrieving the remote interface elements failed"));
    QVERIFY(!receiver().hasQueue());
}

void tst_QWRemoteControlSetup::firstElementThatCannotBeAddedEndsTheSetup()
{
    receiver().elements = FakeRemoteReceiver::elementsWithCookies({20, 18, 21, 35});
    receiver().failingElement = 2;
    RemoteListener listener;
    remote().addListener(&listener);
    QCOMPARE(receiver().calls.filter("addElement"), QStringList({"addElement 20", "addElement 18", "addElement 21"}));
    QCOMPARE(_warnings(), QStringList("Adding elements to the remote queue failed"));
}

void tst_QWRemoteControlSetup::cookieThatIsNoNumberCannotBeAdded()
{
    receiver().elements = FakeRemoteReceiver::elementsWithCookies({20, QVariant(), 21});
    RemoteListener listener;
    remote().addListener(&listener);
    QCOMPARE(receiver().calls.filter("addElement"), QStringList("addElement 20"));
    QCOMPARE(_warnings(), QStringList("Adding elements to the remote queue failed"));
}

void tst_QWRemoteControlSetup::deviceWithoutChildElementsIsListenedTo()
{
    receiver().elements = FakeRemoteReceiver::elementsWithCookies({});
    RemoteListener listener;
    remote().addListener(&listener);
    QCOMPARE(log(), QString());
    QVERIFY(remote().isActive());
}

void tst_QWRemoteControlSetup::warningTellsWhereItComesFrom()
{
    RemoteListener listener;
    QStringList lines;
    for (const char *const step : {"firstServiceMatching", "createPlugin", "openExclusively"}) {
        receiver().broken = {step};
        remote().addListener(&listener);
        remote().removeListener(&listener);
    }
    const QRegularExpression place("\\(-\\[QWRemoteControl _initQueue\\], QWRemoteControl:(\\d+), (0x[0-9a-f]+)\\)\n");
    const QString text = log();
    for (auto match = place.globalMatch(text); match.hasNext();) {
        const auto found = match.next();
        lines += found.captured(1);
        QCOMPARE(found.captured(2), "0x" + QString::number(quintptr(&remote()), 16));
    }
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines.removeDuplicates(), 0); // each step has its own
    QVERIFY(lines.first().toInt() > 0);
}

QW_TEST_MAIN(tst_QWRemoteControlSetup)
#include "tst_QWRemoteControlSetup.moc"
