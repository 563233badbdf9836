#include "KeyDispatchTest.h"

#include <QDialog>
#include <QVBoxLayout>

/// A key that is a shortcut, by every way on which keys come.
class tst_KeyDispatch : public KeyDispatchTest
{
    Q_OBJECT

private Q_SLOTS:
    void keyFiresOnceAndReachesNobody_data() { routes(); }
    void keyFiresOnceAndReachesNobody();
    void otherKeysTakeTheirWay_data() { routes(); }
    void otherKeysTakeTheirWay();
    void keyFiresAheadOfActions_data() { routes(); }
    void keyFiresAheadOfActions();
    void declinedKeyReachesActions_data() { routes(); }
    void declinedKeyReachesActions();
    void declinedKeyIsJudgedOnce_data() { routes(); }
    void declinedKeyIsJudgedOnce();
    void samePressAgainFiresAgain_data() { routes(); }
    void samePressAgainFiresAgain();
    void refusedMenuShortcutGoesOn_data() { routes(); }
    void refusedMenuShortcutGoesOn();
    void menuShortcutFiresOnce_data() { routes(); }
    void menuShortcutFiresOnce();
    void prohibitedRepeatFallsThrough();
    void heldKeyRepeats();
    void loneModifiersReachNobody_data() { routes(); }
    void loneModifiersReachNobody();
    void dialogOpenedByAShortcutGetsItsKeys_data() { routes(); }
    void dialogOpenedByAShortcutGetsItsKeys();
    void windowClosedByAShortcut_data() { routes(); }
    void windowClosedByAShortcut();
    void takenKeysCountAsHeld_data() { routes(); }
    void takenKeysCountAsHeld();
    void registryReloadedByAShortcut_data() { routes(); }
    void registryReloadedByAShortcut();
};

void tst_KeyDispatch::keyFiresOnceAndReachesNobody()
{
    QFETCH(Route, route);
    type(route, Qt::Key_P);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
    QVERIFY(!m_window->label.questions.contains(Qt::Key_P));
    QVERIFY(!m_window->label.presses.contains(Qt::Key_P));
    QVERIFY(m_window->label.releases.contains(Qt::Key_P));
}

void tst_KeyDispatch::otherKeysTakeTheirWay()
{
    QFETCH(Route, route);
    type(route, Qt::Key_X);
    type(route, Qt::Key_P, Qt::ShiftModifier);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, QStringList());
    QCOMPARE(m_window->label.presses.count(Qt::Key_X), 1);
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 1);
    QCOMPARE(m_window->label.releases.count(Qt::Key_X), 1);
}

void tst_KeyDispatch::keyFiresAheadOfActions()
{
    QFETCH(Route, route);
    QAction action;
    action.setShortcut(Qt::Key_P);
    m_window->addAction(&action);
    int triggered = 0;
    connect(&action, &QAction::triggered, this, [&] { ++triggered; });
    type(route, Qt::Key_P);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
    QCOMPARE(triggered, 0);
}

void tst_KeyDispatch::declinedKeyReachesActions()
{
    QFETCH(Route, route);
    _registry().shortcutWithKey(QWShortcutKey('p', 0))->setEnabled(false);
    QAction action;
    action.setShortcut(Qt::Key_P);
    m_window->addAction(&action);
    int triggered = 0;
    connect(&action, &QAction::triggered, this, [&] { ++triggered; });
    type(route, Qt::Key_P);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(triggered, 1);
    QVERIFY(!m_window->label.presses.contains(Qt::Key_P));
}

/// A menu shortcut whose receiver refuses counts how often it is asked.
void tst_KeyDispatch::declinedKeyIsJudgedOnce()
{
    QFETCH(Route, route);
    m_receiver->allows = false;
    m_window->play->setKeyEquivalent({}); // else the menu asks too
    type(route, Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->validations, 1);
    type(route, Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->validations, 2);
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 2);
}

void tst_KeyDispatch::samePressAgainFiresAgain()
{
    QFETCH(Route, route);
    for (int i = 0; i < 5; ++i)
        type(route, Qt::Key_P);
    type(route, Qt::Key_S);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, (QStringList{"play 0", "play 0", "play 0", "play 0", "play 0", "stop 0"}));
}

void tst_KeyDispatch::refusedMenuShortcutGoesOn()
{
    QFETCH(Route, route);
    m_receiver->allows = false;
    type(route, Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, QStringList());
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 1);
}

void tst_KeyDispatch::menuShortcutFiresOnce()
{
    QFETCH(Route, route);
    type(route, Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, QStringList{"play 1"});
    QVERIFY(!m_window->label.presses.contains(Qt::Key_P));
    QCOMPARE(m_window->play->keyEquivalent(), QString("p"));
}

void tst_KeyDispatch::prohibitedRepeatFallsThrough()
{
    _registry().shortcutWithKey(QWShortcutKey('p', 0))->setProhibitRepeats(true);
    QWidget &label = m_window->label;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_P, Qt::NoModifier, "p");
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_P, Qt::NoModifier, "p", true);
    QCoreApplication::sendEvent(&label, &press);
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 0);
    for (int i = 0; i < 3; ++i)
        QCoreApplication::sendEvent(&label, &repeat);
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 3);
}

void tst_KeyDispatch::heldKeyRepeats()
{
    if (!onX())
        QSKIP("only a real keyboard repeats");
    const auto shortcut = _registry().shortcutWithKey(QWShortcutKey('p', 0));
    const auto times = [this](const QString &what) { return m_receiver->sent.count(what); };
    QVERIFY(XServer::act({"keydown", "p"}));
    QTRY_VERIFY(times("play 0") >= 3);
    QVERIFY(XServer::act({"keyup", "p"}));
    QVERIFY(arrived(Route::X, m_window->label));
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 0);
    m_receiver->sent.clear();
    shortcut->setProhibitRepeats(true);
    QVERIFY(XServer::act({"keydown", "p"}));
    QTRY_VERIFY(m_window->label.presses.count(Qt::Key_P) >= 2);
    QVERIFY(XServer::act({"keyup", "p"}));
    QVERIFY(arrived(Route::X, m_window->label));
    QCOMPARE(times("play 0"), 1);
}

void tst_KeyDispatch::loneModifiersReachNobody()
{
    QFETCH(Route, route);
    if (route == Route::X)
        QVERIFY(XServer::act({"key", "shift"}));
    else
        type(route, Qt::Key_Shift);
    QVERIFY(arrived(route, m_window->label));
    const KeyLabel &label = m_window->label;
    QVERIFY(!label.questions.contains(Qt::Key_Shift));
    QVERIFY(!label.presses.contains(Qt::Key_Shift));
    QVERIFY(!label.releases.contains(Qt::Key_Shift));
}

void tst_KeyDispatch::dialogOpenedByAShortcutGetsItsKeys()
{
    QFETCH(Route, route);
    QDialog dialog;
    KeyLabel inside;
    QVBoxLayout layout(&dialog);
    layout.addWidget(&inside);
    bool done = false;
    m_receiver->whileActing = [&] {
        QMetaObject::invokeMethod(
            &dialog,
            [&] {
                QVERIFY(activate(dialog));
                type(route, Qt::Key_P); // the same key, which the dialog keeps
                type(route, Qt::Key_S);
                QVERIFY(arrived(route, inside));
                done = true;
                dialog.accept();
            },
            Qt::QueuedConnection);
        dialog.exec();
    };
    type(route, Qt::Key_P);
    QTRY_VERIFY(done && !dialog.isVisible());
    m_receiver->whileActing = {};
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
    QCOMPARE(inside.presses.count(Qt::Key_P), 1);
    QCOMPARE(inside.presses.count(Qt::Key_S), 1);
    QVERIFY(activate(*m_window));
    m_window->label.setFocus();
    type(route, Qt::Key_S);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent.last(), QString("stop 0"));
    QVERIFY(!m_window->label.presses.contains(Qt::Key_P));
    inside.setParent(nullptr);
}

void tst_KeyDispatch::windowClosedByAShortcut()
{
    QFETCH(Route, route);
    auto *const second = new QMainWindow;
    second->setAttribute(Qt::WA_DeleteOnClose);
    second->setCentralWidget(new KeyLabel);
    second->centralWidget()->setFocus();
    QVERIFY(activate(*second));
    const QPointer<QMainWindow> guard(second);
    m_receiver->whileActing = [&] { guard->close(); };
    type(route, Qt::Key_P);
    QTRY_VERIFY(!guard);
    m_receiver->whileActing = {};
    QVERIFY(activate(*m_window));
    type(route, Qt::Key_P);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, (QStringList{"play 0", "play 0"}));
}

/// Nobody else hears of a key that a shortcut takes.
void tst_KeyDispatch::takenKeysCountAsHeld()
{
    QFETCH(Route, route);
    const auto &noted = m_system->keyboard.noted;
    bool wasKnown = false;
    m_receiver->whileActing = [&] {
        wasKnown = std::any_of(noted.begin(), noted.end(), [](const auto &n) { return n.second == Qt::Key_P; });
    };
    type(route, Qt::Key_P);
    if (route != Route::X)
        type(route, Qt::Key_Shift);
    QVERIFY(arrived(route, m_window->label));
    m_receiver->whileActing = {};
    QVERIFY(wasKnown);
    QVERIFY(noted.contains({QEvent::KeyPress, Qt::Key_P}));
    QVERIFY(noted.contains({QEvent::KeyRelease, Qt::Key_P}));
    if (route != Route::X) {
        QVERIFY(noted.contains({QEvent::KeyPress, Qt::Key_Shift}));
        QVERIFY(noted.contains({QEvent::KeyRelease, Qt::Key_Shift}));
    }
}

void tst_KeyDispatch::registryReloadedByAShortcut()
{
    QFETCH(Route, route);
    m_receiver->whileActing = [this] { _registry().loadCurrentShortcuts(); };
    type(route, Qt::Key_P);
    type(route, Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, (QStringList{"play 0", "play 1"}));
}

QW_KEY_DISPATCH_MAIN(tst_KeyDispatch)
#include "tst_KeyDispatch.moc"
