#include <QWPlatform/appkit/responders/ControlActions.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>
#include <QStackedLayout>
#include <QTest>
#include <QValidator>

/// Receives the controls' actions and notes what they showed then.
class Receiver : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void changed(QObject *sender)
    {
        if (const auto *const field = qobject_cast<QLineEdit *>(sender))
            texts.append(field->text());
        if (const auto *const choice = qobject_cast<QComboBox *>(sender))
            texts.append(choice->currentText());
        if (whileActing)
            whileActing();
    }

    QStringList texts;
    std::function<void()> whileActing;
};

class tst_ControlActions;
Q_DECLARE_METATYPE(std::function<void(tst_ControlActions &)>)

/// When a field sends its action: whenever an edit that changed it ends, once.
class tst_ControlActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }
    void editEnds_data();
    void editEnds();
    void returnThenTabSendsOnce();
    void returnSendsAnUnchangedTextToo();
    void unchangedTextIsNotSent();
    void typedAndTakenBackIsUnchanged();
    void programsOwnTextIsNotSent();
    void programsOwnTextEndsTheEdit();
    void textThatTheClearButtonTookIsSent();
    void refusedTextIsNotSent();
    void actionThatTakesTheKeyboardSendsOnce();
    void fieldThatIsNeverShownIsSentAtTheEnd();
    void completedTextIsSent();
    void receiverMayGoFirst();
    void editedChoiceIsSentOnce_data();
    void editedChoiceIsSentOnce();

private:
    QLineEdit &field() { return *m_window->findChild<QLineEdit *>("field"); }
    QLineEdit &other() { return *m_window->findChild<QLineEdit *>("other"); }
    QComboBox &choice() { return *m_window->findChild<QComboBox *>("choice"); }

    template <class Control>
    void _add(const char *name)
    {
        auto *const control = new Control(m_window->findChild<QWidget *>("pane"));
        control->setObjectName(name);
        control->show();
        QVERIFY(platform::connectControl(*control, "changed:", *m_receiver));
    }

    std::unique_ptr<Receiver> m_receiver;
    std::unique_ptr<QWidget> m_window;
};

void tst_ControlActions::init()
{
    m_receiver = std::make_unique<Receiver>();
    m_window = std::make_unique<QWidget>();
    auto *const pane = new QWidget(m_window.get());
    pane->setObjectName("pane");
    _add<QLineEdit>("field");
    _add<QLineEdit>("other");
    _add<QComboBox>("choice");
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    field().setFocus();
}

void tst_ControlActions::editEnds_data()
{
    using End = std::function<void(tst_ControlActions &)>;
    QTest::addColumn<End>("end");
    const auto row = [](const char *name, const End &end) { QTest::newRow(name) << end; };
    row("Return", [](auto &test) { QTest::keyClick(&test.field(), Qt::Key_Return); });
    row("Tab", [](auto &test) { QTest::keyClick(&test.field(), Qt::Key_Tab); });
    row("another field", [](auto &test) { test.other().setFocus(); });
    row("another pane", [](auto &test) { test.m_window->template findChild<QWidget *>("pane")->hide(); });
    row("window closes", [](auto &test) { test.m_window->close(); });
    row("application quits", [](auto &) { Q_EMIT qApp->aboutToQuit({}); });
}

void tst_ControlActions::editEnds()
{
    QFETCH(const std::function<void(tst_ControlActions &)>, end);
    QTest::keyClicks(&field(), "name");
    QCOMPARE(m_receiver->texts, QStringList());
    end(*this);
    QCOMPARE(m_receiver->texts, QStringList{"name"});
    field().setFocus(); // nothing of it is left over
    other().setFocus();
    m_window->close();
    QCOMPARE(m_receiver->texts, QStringList{"name"});
}

void tst_ControlActions::returnThenTabSendsOnce()
{
    QTest::keyClicks(&field(), "name");
    QTest::keyClick(&field(), Qt::Key_Return);
    QTest::keyClick(&field(), Qt::Key_Tab);
    QCOMPARE(m_receiver->texts, QStringList{"name"});
    field().setFocus();
    QTest::keyClicks(&field(), "s");
    QTest::keyClick(&field(), Qt::Key_Tab);
    QCOMPARE(m_receiver->texts, (QStringList{"name", "names"}));
}

/// It asks for the action: a search again, say.
void tst_ControlActions::returnSendsAnUnchangedTextToo()
{
    QTest::keyClick(&field(), Qt::Key_Return);
    QCOMPARE(m_receiver->texts, QStringList{""});
}

void tst_ControlActions::unchangedTextIsNotSent()
{
    QTest::keyClick(&field(), Qt::Key_Tab);
    m_window->close();
    QCOMPARE(m_receiver->texts, QStringList());
}

void tst_ControlActions::typedAndTakenBackIsUnchanged()
{
    QTest::keyClicks(&field(), "a");
    QTest::keyClick(&field(), Qt::Key_Backspace);
    QTest::keyClick(&field(), Qt::Key_Tab);
    QCOMPARE(m_receiver->texts, QStringList());
}

void tst_ControlActions::programsOwnTextIsNotSent()
{
    QTest::keyClicks(&field(), "a");
    QTest::keyClick(&field(), Qt::Key_Return);
    field().setText("b");
    field().setText("a");
    QTest::keyClick(&field(), Qt::Key_Tab);
    QCOMPARE(m_receiver->texts, QStringList{"a"});
}

void tst_ControlActions::programsOwnTextEndsTheEdit()
{
    QTest::keyClicks(&field(), "typed");
    field().setText("as stored");
    QTest::keyClick(&field(), Qt::Key_Tab);
    QCOMPARE(m_receiver->texts, QStringList());
}

void tst_ControlActions::textThatTheClearButtonTookIsSent()
{
    field().setText("as stored");
    field().setClearButtonEnabled(true);
    auto *const button = field().findChild<QAbstractButton *>();
    QVERIFY(button);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(field().text(), QString());
    other().setFocus();
    QCOMPARE(m_receiver->texts, QStringList{""});
}

void tst_ControlActions::refusedTextIsNotSent()
{
    const QIntValidator hundreds(100, 999);
    field().setValidator(&hundreds);
    QTest::keyClicks(&field(), "12");
    QTest::keyClick(&field(), Qt::Key_Return);
    other().setFocus();
    QCOMPARE(m_receiver->texts, QStringList());
    field().setFocus();
    QTest::keyClicks(&field(), "3");
    other().setFocus();
    QCOMPARE(m_receiver->texts, QStringList{"123"});
    field().setValidator(nullptr);
}

/// As an alert does.
void tst_ControlActions::actionThatTakesTheKeyboardSendsOnce()
{
    m_receiver->whileActing = [this] { other().setFocus(); };
    QTest::keyClicks(&field(), "name");
    QTest::keyClick(&field(), Qt::Key_Return);
    QCOMPARE(m_receiver->texts, QStringList{"name"});
}

void tst_ControlActions::fieldThatIsNeverShownIsSentAtTheEnd()
{
    m_window->close();
    QTest::keyClicks(&field(), "name");
    Q_EMIT qApp->aboutToQuit({});
    QCOMPARE(m_receiver->texts, QStringList{"name"});
}

void tst_ControlActions::completedTextIsSent()
{
    QCompleter completer({"Adagio", "Presto"});
    completer.setCompletionMode(QCompleter::InlineCompletion);
    field().setCompleter(&completer);
    QTest::keyClicks(&field(), "Pr");
    other().setFocus();
    QCOMPARE(m_receiver->texts, QStringList{"Presto"});
    field().setCompleter(nullptr);
}

void tst_ControlActions::receiverMayGoFirst()
{
    QTest::keyClicks(&field(), "name");
    m_receiver.reset();
    QTest::keyClick(&field(), Qt::Key_Return);
    m_window->close();
}

void tst_ControlActions::editedChoiceIsSentOnce_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("key");
    QTest::newRow("new, Return") << "other" << int(Qt::Key_Return);
    QTest::newRow("new, Tab") << "other" << int(Qt::Key_Tab);
    QTest::newRow("listed, Return") << "second" << int(Qt::Key_Return);
    QTest::newRow("listed, Tab") << "second" << int(Qt::Key_Tab);
}

void tst_ControlActions::editedChoiceIsSentOnce()
{
    QFETCH(QString, typed);
    QFETCH(int, key);
    auto *const edited = new QComboBox(m_window.get());
    edited->setEditable(true);
    edited->addItems({"first", "second"});
    QVERIFY(platform::connectControl(*edited, "changed:", *m_receiver));
    edited->show();
    edited->setFocus();
    edited->lineEdit()->selectAll();
    QTest::keyClicks(edited, typed);
    QTest::keyClick(edited, Qt::Key(key));
    other().setFocus();
    QCOMPARE(m_receiver->texts, QStringList{typed});
}

QTEST_MAIN(tst_ControlActions)
#include "tst_ControlActions.moc"
