#include "CaptureSheetHost.h"
#include "fakes/QWTestMain.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTimer>

using namespace std::chrono_literals;

namespace
{
/// As assistive technology does it.
void pressByAssistiveTechnology(QWidget &button)
{
    QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(&button);
    interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}
} // namespace

/// Leaving and committing the capture sheet by keys alone, and what it tells those who do not see it.
class tst_KeyCaptureWithoutMouse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_host.reset(); }
    void escapeTwiceLeaves();
    void escapeWithAnythingBetweenDoesNot();
    void heldKeyIsSet();
    void heldKeyLetGoTooSoonIsNot();
    void heldRefusedKeyIsNot();
    void heldKeyRepeatsAreOnePress();
    void heldKeyFiresNothingOnceSet();
    void modifierThatChangesEndsTheHold();
    void heldOptionClearsNothing();
    void heldKeyInUseReachesTheButton();
    void keysThatPressTheButton_data();
    void keysThatPressTheButton();
    void otherKeysAreTheCapturesAgain();
    void repeatsOfTheHeldKeyPressNothing();
    void buttonIsForgottenWithTheWindow();
    void keyThatOpenedTheSheetIsNotCaptured();
    void buttonsAnswerAssistiveTechnology();
    void whatHappensIsTold();
    void focusIsInNoTextField();

private:
    /// The clock goes on, and the sheet looks at it, if it looks at all.
    void hold(std::chrono::nanoseconds time)
    {
        const auto *const ticks = dynamic_cast<QObject *>(m_host->editor())->findChild<QTimer *>("holdTicks");
        QVERIFY(ticks);
        const QSignalSpy looks(ticks, &QTimer::timeout);
        m_host->system.clock.advance(time);
        QTRY_VERIFY(!ticks->isActive() || looks.size() >= 2);
    }

    /// Holds ⌘X, which "Cut" has.
    bool reachButton()
    {
        m_host->press(Qt::Key_X, Qt::ControlModifier);
        m_host->system.clock.advance(1s);
        const bool isReached = QTest::qWaitFor([&] { return m_host->clearOther->hasFocus(); });
        m_host->release(Qt::Key_X, Qt::ControlModifier);
        hold(5s);
        return isReached;
    }

    std::unique_ptr<CaptureSheetHost> m_host;
};

void tst_KeyCaptureWithoutMouse::init()
{
    m_host = std::make_unique<CaptureSheetHost>();
    QVERIFY(m_host->isOpen);
}

void tst_KeyCaptureWithoutMouse::escapeTwiceLeaves()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_K);
    m_host->type(Qt::Key_Escape);
    QVERIFY(m_host->sheet()->isVisible());
    QCOMPARE(m_host->outro->text(), m_host->reserved);
    m_host->type(Qt::Key_Escape);
    QVERIFY(!m_host->sheet()->isVisible());
    QVERIFY(m_host->window()->isVisible());
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
}

void tst_KeyCaptureWithoutMouse::escapeWithAnythingBetweenDoesNot()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_Escape);
    m_host->type(Qt::Key_K);
    m_host->type(Qt::Key_Escape);
    m_host->type(Qt::Key_Escape, Qt::ControlModifier);
    QCOMPARE(m_host->shown->text(), QString("⌘⎋"));
    m_host->type(Qt::Key_Escape);
    QVERIFY(m_host->sheet()->isVisible());
}

void tst_KeyCaptureWithoutMouse::heldKeyIsSet()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_K, Qt::ControlModifier);
    hold(900ms);
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    m_host->system.clock.advance(100ms);
    QTRY_COMPARE(m_host->at(0, 0)->key(), QWShortcutKey('k', EditorHost::command));
    QCOMPARE(m_host->system.current().size(), 1);
    m_host->release(Qt::Key_K, Qt::ControlModifier);
    m_host->system.clock.advance(50ms);
    QTRY_VERIFY(!m_host->sheet()->isVisible());
}

void tst_KeyCaptureWithoutMouse::heldKeyLetGoTooSoonIsNot()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_K);
    hold(900ms);
    m_host->release(Qt::Key_K);
    hold(5s);
    QVERIFY(m_host->sheet()->isVisible());
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    m_host->press(Qt::Key_K); // from the start
    hold(900ms);
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    m_host->release(Qt::Key_K);
}

void tst_KeyCaptureWithoutMouse::heldRefusedKeyIsNot()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_X, Qt::ControlModifier);
    hold(5s);
    QCOMPARE(m_host->outro->text(), m_host->inUse("Cut"));
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    m_host->release(Qt::Key_X, Qt::ControlModifier);
    m_host->press(Qt::Key_Escape);
    hold(5s);
    QVERIFY(m_host->sheet()->isVisible());
    m_host->release(Qt::Key_Escape);
}

/// A window system may tell of a repeat as of another press.
void tst_KeyCaptureWithoutMouse::heldKeyRepeatsAreOnePress()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_K);
    for (int i = 0; i < 9; ++i) {
        m_host->system.clock.advance(100ms);
        m_host->release(Qt::Key_K);
        m_host->press(Qt::Key_K);
    }
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    m_host->system.clock.advance(100ms);
    QTRY_COMPARE(m_host->at(0, 0)->key(), QWShortcutKey('k', 0));
    m_host->release(Qt::Key_K);
}

void tst_KeyCaptureWithoutMouse::heldKeyFiresNothingOnceSet()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_K);
    m_host->system.clock.advance(1s);
    QTRY_COMPARE(m_host->at(0, 0)->key(), QWShortcutKey('k', 0));
    QVERIFY(m_host->sheet()->isVisible());
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_K, {}, "k", true);
    QCoreApplication::sendEvent(m_host->shown, &repeat);
    QCOMPARE(m_host->receiver.sent, QStringList());
    m_host->release(Qt::Key_K);
    m_host->system.clock.advance(50ms);
    QTRY_VERIFY(!m_host->sheet()->isVisible());
    QVERIFY(EditorHost::becomesKey(*m_host->window()));
    m_host->type(Qt::Key_K);
    QCOMPARE(m_host->receiver.sent, QStringList{"play 1"});
}

void tst_KeyCaptureWithoutMouse::modifierThatChangesEndsTheHold()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_K, Qt::ControlModifier);
    hold(500ms);
    m_host->release(Qt::Key_Control, Qt::ControlModifier);
    hold(5s);
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0));
    QCOMPARE(m_host->shown->text(), QString("⌘K"));
    m_host->release(Qt::Key_K);
}

/// Who holds it is looking for the rest of the combination.
void tst_KeyCaptureWithoutMouse::heldOptionClearsNothing()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    m_host->press(Qt::Key_Alt);
    hold(5s);
    QCOMPARE(m_host->at(1, 0)->key(), QWShortcutKey('x', EditorHost::command));
    QCOMPARE(m_host->clear->text(), QString("Clear Other"));
    m_host->type(Qt::Key_K, Qt::AltModifier);
    m_host->release(Qt::Key_Alt, Qt::AltModifier);
    QCOMPARE(m_host->shown->text(), QString("⌥K"));
    QCOMPARE(m_host->system.current().size(), 0);
}

void tst_KeyCaptureWithoutMouse::heldKeyInUseReachesTheButton()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_X, Qt::ControlModifier);
    hold(900ms);
    QVERIFY(m_host->shown->hasFocus());
    m_host->system.clock.advance(100ms);
    QTRY_VERIFY(m_host->clearOther->hasFocus());
    hold(5s);
    m_host->release(Qt::Key_X, Qt::ControlModifier);
    hold(5s);
    QCOMPARE(m_host->at(1, 0)->key(), QWShortcutKey('x', EditorHost::command)); // it has only the keyboard
    QVERIFY(m_host->hint->text().contains("Cancel does not bring it back"));
    m_host->type(Qt::Key_Return);
    QVERIFY(m_host->at(1, 0)->key().isClear());
    QCOMPARE(m_host->system.current().size(), 1); // kept at once
    QVERIFY(m_host->hint->text().startsWith("The shortcut of “Cut” was cleared."));
    QVERIFY(m_host->shown->hasFocus() && m_host->ok->isEnabled());
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('p', 0)); // not before OK
    m_host->click(m_host->ok);
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('x', EditorHost::command));
}

void tst_KeyCaptureWithoutMouse::keysThatPressTheButton_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Space") << int(Qt::Key_Space);
}

void tst_KeyCaptureWithoutMouse::keysThatPressTheButton()
{
    QFETCH(int, key);
    QVERIFY(m_host->edit(0, 0));
    QVERIFY(reachButton());
    m_host->type(Qt::Key(key));
    QVERIFY(m_host->at(1, 0)->key().isClear());
    QCOMPARE(m_host->shown->text(), QString("⌘X"));
    m_host->type(Qt::Key(key)); // now it is a key like any other
    QVERIFY(m_host->shown->text() != QString("⌘X"));
}

void tst_KeyCaptureWithoutMouse::otherKeysAreTheCapturesAgain()
{
    QVERIFY(m_host->edit(0, 0));
    QVERIFY(reachButton());
    m_host->type(Qt::Key_K);
    QCOMPARE(m_host->shown->text(), QString("K"));
    QVERIFY(m_host->shown->hasFocus() && !m_host->clearOther->isVisible());
    QVERIFY(reachButton());
    m_host->type(Qt::Key_Escape);
    QCOMPARE(m_host->outro->text(), m_host->reserved);
    m_host->type(Qt::Key_Escape);
    QVERIFY(!m_host->sheet()->isVisible());
    QCOMPARE(m_host->at(1, 0)->key(), QWShortcutKey('x', EditorHost::command));
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_Return); // the offer went with the sheet
    QCOMPARE(m_host->shown->text(), QString("⏎"));
}

/// Window systems tell of a repeat as of another press, or as let go and pressed again.
void tst_KeyCaptureWithoutMouse::repeatsOfTheHeldKeyPressNothing()
{
    m_host->at(1, 0)->setKey(QWShortcutKey(13, 0));
    QVERIFY(m_host->edit(0, 0));
    m_host->press(Qt::Key_Return);
    m_host->system.clock.advance(1s);
    QTRY_VERIFY(m_host->clearOther->hasFocus());
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, {}, "\r", true);
    QCoreApplication::sendEvent(m_host->clearOther, &repeat);
    m_host->release(Qt::Key_Return);
    m_host->press(Qt::Key_Return);
    QCOMPARE(m_host->at(1, 0)->key(), QWShortcutKey(13, 0));
    m_host->release(Qt::Key_Return);
    hold(5s);
    m_host->type(Qt::Key_Return);
    QVERIFY(m_host->at(1, 0)->key().isClear());
}

void tst_KeyCaptureWithoutMouse::buttonIsForgottenWithTheWindow()
{
    QVERIFY(m_host->edit(0, 0));
    QVERIFY(reachButton());
    QEvent elsewhere(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(m_host->sheet(), &elsewhere);
    m_host->type(Qt::Key_Return);
    QCOMPARE(m_host->shown->text(), QString("⏎"));
    QCOMPARE(m_host->at(1, 0)->key(), QWShortcutKey('x', EditorHost::command));
}

void tst_KeyCaptureWithoutMouse::keyThatOpenedTheSheetIsNotCaptured()
{
    QVERIFY(m_host->edit(0, 0));
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, {}, "\r", true);
    QCoreApplication::sendEvent(m_host->shown, &repeat);
    QCOMPARE(m_host->shown->text(), QString("P"));
    hold(5s);
    QVERIFY(m_host->sheet()->isVisible());
}

void tst_KeyCaptureWithoutMouse::buttonsAnswerAssistiveTechnology()
{
    QVERIFY(m_host->edit(0, 0));
    m_host->type(Qt::Key_K);
    pressByAssistiveTechnology(*m_host->ok);
    QTRY_VERIFY(!m_host->sheet()->isVisible());
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('k', 0));
    QVERIFY(m_host->edit(0, 0));
    pressByAssistiveTechnology(*m_host->clear);
    QTRY_COMPARE(m_host->shown->text(), QString());
    pressByAssistiveTechnology(*m_host->cancel);
    QTRY_VERIFY(!m_host->sheet()->isVisible());
    QCOMPARE(m_host->at(0, 0)->key(), QWShortcutKey('k', 0));
}

/// The captured key has the focus: its name is what a screen reader says.
void tst_KeyCaptureWithoutMouse::whatHappensIsTold()
{
    QVERIFY(m_host->edit(0, 0));
    const auto told = [&] { return QAccessible::queryAccessibleInterface(m_host->shown)->text(QAccessible::Name); };
    QVERIFY(told().contains("“Play”") && told().contains("Escape twice"));
    m_host->type(Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(told(), QString("Ctrl+K"));
    m_host->type(Qt::Key_X, Qt::ControlModifier);
    QVERIFY(told().startsWith("Ctrl+X. " + m_host->inUse("Cut")) &&
            told().endsWith("hold the keys for a second to reach the button."));
    m_host->type(Qt::Key_Escape);
    QCOMPARE(told(), "Esc. " + m_host->reserved);
    m_host->click(m_host->clear);
    QCOMPARE(told(), QString("No shortcut"));
    QVERIFY(reachButton());
    QCOMPARE(QAccessible::queryAccessibleInterface(m_host->clearOther)->text(QAccessible::Name),
             QString("Clear the Shortcut of “Cut”"));
    m_host->type(Qt::Key_Return);
    QVERIFY(told().startsWith("Ctrl+X. The shortcut of “Cut” was cleared."));
    m_host->press(Qt::Key_K);
    m_host->system.clock.advance(1s);
    QTRY_COMPARE(told(), QString("K. The shortcut is set. Let go of the keys."));
    m_host->release(Qt::Key_K);
}

void tst_KeyCaptureWithoutMouse::focusIsInNoTextField()
{
    QVERIFY(m_host->edit(0, 0));
    QCOMPARE(QApplication::focusWidget(), m_host->shown);
    QVERIFY(!m_host->shown->inputMethodQuery(Qt::ImEnabled).toBool());
    for (QPushButton *const button : {m_host->ok, m_host->cancel, m_host->clear, m_host->clearOther})
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    m_host->click(m_host->clear);
    QCOMPARE(QApplication::focusWidget(), m_host->shown);
    auto *const hint = m_host->outlet<QLabel>("setShortcutHintText");
    QVERIFY(hint->isVisible() && hint->text().contains("Escape twice") && hint->text().contains("a second"));
}

QW_TEST_MAIN(tst_KeyCaptureWithoutMouse)
#include "tst_KeyCaptureWithoutMouse.moc"
