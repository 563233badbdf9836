#include <QWPlatform/appkit/Selector.h>

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using platform::perform;
using platform::performReturning;
using platform::respondsTo;
using platform::Selector;

/// Has one method of each kind that matters.
class Receiver : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void loadShortcuts() { calls.append("loadShortcuts"); }
    Q_INVOKABLE void loadShortcuts(QObject *) { calls.append("loadShortcuts:"); }
    Q_INVOKABLE void setStateAtPosition(bool on, double position)
    {
        calls.append(QString("%1 %2").arg(on).arg(position));
    }
    Q_INVOKABLE bool isReady(int minimum) { return minimum < 3; }
    Q_INVOKABLE void take(const QString &text) { calls.append(text); }
    Q_INVOKABLE void paste(QObject *) { calls.append("paste:"); }
    Q_INVOKABLE void withDefault(QObject * = nullptr) { calls.append("withDefault"); }

    QStringList calls;

Q_SIGNALS:
    void changed();

private:
    Q_INVOKABLE void hidden() { calls.append("hidden"); }
};

/// Overrides an operation of its base class.
class DerivedReceiver : public Receiver
{
    Q_OBJECT

public:
    Q_INVOKABLE void loadShortcuts() { calls.append("derived"); }
};

class tst_Selector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesMapToMethods_data();
    void namesMapToMethods();
    void equalNamesAreEqual();
    void emptyNameIsNoSelector();
    void colonsTellOverloadsApart();
    void argumentsArrive();
    void argumentTypesMustMatchExactly();
    void resultIsHandedBack();
    void resultTypeMustMatchExactly();
    void derivedClassIsAskedFirst();
    void signalsAndPrivateMethodsNeverMatch();
    void ownSlotsOfQtAreOutOfReach_data();
    void ownSlotsOfQtAreOutOfReach();
    void editingSlotsOfQtAreReached_data();
    void editingSlotsOfQtAreReached();
    void hostMethodNeedsTheColonOfItsSender();
    void defaultArgumentsMayBeLeftOut();
    void nullTargetRespondsToNothing();
};

void tst_Selector::namesMapToMethods_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<int>("arguments");
    QTest::newRow("none") << "loadShortcuts" << QByteArray("loadShortcuts") << 0;
    QTest::newRow("one") << "editShortcut:" << QByteArray("editShortcut") << 1;
    QTest::newRow("two") << "setLEDState:atPosition:" << QByteArray("setLEDStateAtPosition") << 2;
    QTest::newRow("three") << "xPanelDidEnd:returnCode:contextInfo:" << QByteArray("xPanelDidEndReturnCodeContextInfo")
                           << 3;
    QTest::newRow("private") << "_save:" << QByteArray("_save") << 1;
    QTest::newRow("empty piece") << "add::" << QByteArray("add") << 2;
    QTest::newRow("no name at all") << ":" << QByteArray("") << 1;
    QTest::newRow("not a method name") << "a b(c)" << QByteArray("a b(c)") << 0;
}

void tst_Selector::namesMapToMethods()
{
    QFETCH(QString, name);
    const Selector selector(name);
    QCOMPARE(selector.name(), name);
    QTEST(selector.methodName(), "method");
    QTEST(selector.argumentCount(), "arguments");
}

void tst_Selector::equalNamesAreEqual()
{
    QCOMPARE(Selector("copy:"), Selector(QString("copy:")));
    QVERIFY(Selector("copy:") != Selector("copy"));
}

void tst_Selector::emptyNameIsNoSelector()
{
    QVERIFY(Selector("").isNull());
    QCOMPARE(Selector(""), Selector());
    QCOMPARE(Selector().name(), QString());
    Receiver receiver;
    QVERIFY(!respondsTo(&receiver, Selector()));
}

void tst_Selector::colonsTellOverloadsApart()
{
    Receiver receiver;
    QVERIFY(perform(&receiver, "loadShortcuts"));
    QVERIFY(perform<QObject *>(&receiver, "loadShortcuts:", this));
    QCOMPARE(receiver.calls, (QStringList{"loadShortcuts", "loadShortcuts:"}));
}

void tst_Selector::argumentsArrive()
{
    Receiver receiver;
    QVERIFY(perform(&receiver, "setState:atPosition:", true, 2.5));
    QVERIFY(perform(&receiver, "take:", QString("text")));
    QCOMPARE(receiver.calls, (QStringList{"1 2.5", "text"}));
}

void tst_Selector::argumentTypesMustMatchExactly()
{
    Receiver receiver;
    QVERIFY(!perform(&receiver, "setState:atPosition:", true, 2));
    QVERIFY(!perform(&receiver, "take:", 5));
    QVERIFY(!respondsTo(&receiver, "take:")); // as an action it would be handed a sender
    QVERIFY(receiver.calls.isEmpty());
}

void tst_Selector::resultIsHandedBack()
{
    Receiver receiver;
    QCOMPARE((performReturning<bool>(&receiver, "isReady:", 2)), std::optional(true));
    QCOMPARE((performReturning<bool>(&receiver, "isReady:", 3)), std::optional(false));
    QVERIFY(perform(&receiver, "isReady:", 3)); // dropped
}

void tst_Selector::resultTypeMustMatchExactly()
{
    Receiver receiver;
    QVERIFY(!(performReturning<int>(&receiver, "isReady:", 2)).has_value());
    QVERIFY(!performReturning<bool>(&receiver, "loadShortcuts").has_value());
}

void tst_Selector::derivedClassIsAskedFirst()
{
    DerivedReceiver receiver;
    QVERIFY(perform(&receiver, "loadShortcuts"));
    QVERIFY(perform<QObject *>(&receiver, "loadShortcuts:", this));
    QCOMPARE(receiver.calls, (QStringList{"derived", "loadShortcuts:"}));
}

void tst_Selector::signalsAndPrivateMethodsNeverMatch()
{
    Receiver receiver;
    QSignalSpy changed(&receiver, &Receiver::changed);
    QVERIFY(!perform(&receiver, "changed"));
    QVERIFY(!perform(&receiver, "hidden"));
    QCOMPARE(changed.size(), 0);
    QVERIFY(receiver.calls.isEmpty());
}

void tst_Selector::ownSlotsOfQtAreOutOfReach_data()
{
    QTest::addColumn<QString>("selector");
    for (const char *name :
         {"deleteLater", "deleteLater:", "close", "close:", "hide", "clear", "setText:", "returnPressed", "setFocus"})
        QTest::newRow(name) << name;
}

void tst_Selector::ownSlotsOfQtAreOutOfReach()
{
    QFETCH(QString, selector);
    QLineEdit field;
    QVERIFY(!respondsTo(&field, selector));
    QVERIFY(!perform(&field, selector));
    QVERIFY(!perform(&field, selector, QString("text")));
    QVERIFY(!perform<QObject *>(&field, selector, this));
}

void tst_Selector::editingSlotsOfQtAreReached_data()
{
    QTest::addColumn<QString>("selector");
    for (const char *name : {"undo", "redo", "cut", "copy", "paste", "selectAll"}) {
        QTest::newRow(name) << name;
        QTest::newRow(qPrintable(QString(name) + ':')) << QString(name) + ':';
    }
}

void tst_Selector::editingSlotsOfQtAreReached()
{
    QFETCH(QString, selector);
    QLineEdit field("some text");
    QVERIFY(respondsTo(&field, selector));
    if (!selector.startsWith("selectAll"))
        return;
    QVERIFY(selector.endsWith(':') ? perform<QObject *>(&field, selector, this) : perform(&field, selector));
    QCOMPARE(field.selectedText(), QString("some text"));
}

void tst_Selector::hostMethodNeedsTheColonOfItsSender()
{
    Receiver receiver;
    QVERIFY(respondsTo(&receiver, "paste:"));
    QVERIFY(!respondsTo(&receiver, "paste"));
}

void tst_Selector::defaultArgumentsMayBeLeftOut()
{
    Receiver receiver;
    QVERIFY(perform(&receiver, "withDefault"));
    QVERIFY(perform<QObject *>(&receiver, "withDefault:", nullptr));
    QCOMPARE(receiver.calls.size(), 2);
}

void tst_Selector::nullTargetRespondsToNothing()
{
    QVERIFY(!respondsTo(nullptr, "copy:"));
    QVERIFY(!perform(nullptr, "copy"));
}

QTEST_MAIN(tst_Selector)
#include "tst_Selector.moc"
