#include "KeyRouteTest.h"

#include <QDialog>
#include <QSignalSpy>
#include <QVBoxLayout>

/// A key that is a shortcut. All of it for each way on which keys come.
class tst_KeyDispatch : public KeyRouteTest
{
    Q_OBJECT

private Q_SLOTS:
    void keyFiresOnceAndReachesNobody();
    void otherKeysTakeTheirWay();
    void keyFiresAheadOfActions();
    void declinedKeyReachesActions();
    void declinedKeyIsJudgedOnce();
    void samePressAgainFiresAgain();
    void refusedMenuShortcutGoesOn();
    void menuShortcutFiresOnce();
    void prohibitedRepeatFallsThrough();
    void heldKeyRepeats();
    void loneModifiersReachNobody();
    void dialogOpenedByAShortcutGetsItsKeys();
    void windowClosedByAShortcut();
    void takenKeysCountAsHeld();
    void registryReloadedByAShortcut();
};

void tst_KeyDispatch::keyFiresOnceAndReachesNobody()
{
    type(Qt::Key_P);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
    QVERIFY(!m_window->label.questions.contains(Qt::Key_P));
    QVERIFY(!m_window->label.presses.contains(Qt::Key_P));
    QVERIFY(m_window->label.releases.contains(Qt::Key_P));
}

void tst_KeyDispatch::otherKeysTakeTheirWay()
{
    type(Qt::Key_X);
    type(Qt::Key_P, Qt::ShiftModifier);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->sent, QStringList());
    QCOMPARE(m_window->label.presses.count(Qt::Key_X), 1);
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 1);
    QCOMPARE(m_window->label.releases.count(Qt::Key_X), 1);
}

void tst_KeyDispatch::keyFiresAheadOfActions()
{
    QAction action;
    const QSignalSpy triggered(&action, &QAction::triggered);
    action.setShortcut(Qt::Key_P);
    m_window->addAction(&action);
    type(Qt::Key_P);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
    QCOMPARE(triggered.size(), 0);
}

void tst_KeyDispatch::declinedKeyReachesActions()
{
    _registry().shortcutWithKey(QWShortcutKey('p', 0))->setEnabled(false);
    QAction action;
    const QSignalSpy triggered(&action, &QAction::triggered);
    action.setShortcut(Qt::Key_P);
    m_window->addAction(&action);
    type(Qt::Key_P);
    QVERIFY(arrived());
    QCOMPARE(triggered.size(), 1);
    QVERIFY(!m_window->label.presses.contains(Qt::Key_P));
}

/// A menu shortcut whose receiver refuses counts how often it is asked.
void tst_KeyDispatch::declinedKeyIsJudgedOnce()
{
    m_receiver->allows = false;
    m_window->play->setKeyEquivalent({}); // else the menu asks too
    type(Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->validated.size(), 1);
    type(Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->validated.size(), 2);
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 2);
}

void tst_KeyDispatch::samePressAgainFiresAgain()
{
    for (int i = 0; i < 5; ++i)
        type(Qt::Key_P);
    type(Qt::Key_S);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->sent, (QStringList{"play 0", "play 0", "play 0", "play 0", "play 0", "stop 0"}));
}

void tst_KeyDispatch::refusedMenuShortcutGoesOn()
{
    m_receiver->allows = false;
    type(Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->sent, QStringList());
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 1);
}

void tst_KeyDispatch::menuShortcutFiresOnce()
{
    type(Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived());
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
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_P, Qt::NoModifier, "p");
    QCoreApplication::sendEvent(&label, &press);
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 0);
    for (int i = 0; i < 3; ++i)
        QCoreApplication::sendEvent(&label, &repeat);
    QCoreApplication::sendEvent(&label, &release);
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 3);
}

void tst_KeyDispatch::heldKeyRepeats()
{
    if (route() != Route::X)
        QSKIP("only a real keyboard repeats");
    const auto shortcut = _registry().shortcutWithKey(QWShortcutKey('p', 0));
    const auto times = [this](const QString &what) { return m_receiver->sent.count(what); };
    QVERIFY(XServer::act({"keydown", "p"}));
    QTRY_VERIFY(times("play 0") >= 3);
    QVERIFY(XServer::act({"keyup", "p"}));
    QVERIFY(arrived());
    QCOMPARE(m_window->label.presses.count(Qt::Key_P), 0);
    m_receiver->sent.clear();
    shortcut->setProhibitRepeats(true);
    QVERIFY(XServer::act({"keydown", "p"}));
    QTRY_VERIFY(m_window->label.presses.count(Qt::Key_P) >= 2);
    QVERIFY(XServer::act({"keyup", "p"}));
    QVERIFY(arrived());
    QCOMPARE(times("play 0"), 1);
}

void tst_KeyDispatch::loneModifiersReachNobody()
{
    type(Qt::Key_Shift);
    QVERIFY(arrived());
    const KeyLabel &label = m_window->label;
    QVERIFY(!label.questions.contains(Qt::Key_Shift));
    QVERIFY(!label.presses.contains(Qt::Key_Shift));
    QVERIFY(!label.releases.contains(Qt::Key_Shift));
}

void tst_KeyDispatch::dialogOpenedByAShortcutGetsItsKeys()
{
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
                type(Qt::Key_P); // the same key, which the dialog keeps
                type(Qt::Key_S);
                QVERIFY(arrived(inside));
                done = true;
                dialog.accept();
            },
            Qt::QueuedConnection);
        dialog.exec();
    };
    type(Qt::Key_P);
    QTRY_VERIFY(done && !dialog.isVisible());
    m_receiver->whileActing = {};
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
    QCOMPARE(inside.presses.count(Qt::Key_P), 1);
    QCOMPARE(inside.presses.count(Qt::Key_S), 1);
    QVERIFY(activate(*m_window));
    m_window->label.setFocus();
    type(Qt::Key_S);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->sent.last(), QString("stop 0"));
    QVERIFY(!m_window->label.presses.contains(Qt::Key_P));
    inside.setParent(nullptr);
}

void tst_KeyDispatch::windowClosedByAShortcut()
{
    auto *const second = new QMainWindow;
    second->setAttribute(Qt::WA_DeleteOnClose);
    second->setCentralWidget(new KeyLabel);
    second->centralWidget()->setFocus();
    QVERIFY(activate(*second));
    const QPointer<QMainWindow> guard(second);
    m_receiver->whileActing = [&] { guard->close(); };
    type(Qt::Key_P);
    QTRY_VERIFY(!guard);
    m_receiver->whileActing = {};
    QVERIFY(activate(*m_window));
    type(Qt::Key_P);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->sent, (QStringList{"play 0", "play 0"}));
}

/// Nobody else hears of a key that a shortcut takes.
void tst_KeyDispatch::takenKeysCountAsHeld()
{
    const auto &noted = m_system->keyboard.noted;
    bool wasKnown = false;
    m_receiver->whileActing = [&] {
        wasKnown = std::any_of(noted.begin(), noted.end(), [](const auto &n) { return n.second == Qt::Key_P; });
    };
    type(Qt::Key_P);
    type(Qt::Key_Shift);
    QVERIFY(arrived());
    m_receiver->whileActing = {};
    QVERIFY(wasKnown);
    for (const int key : {Qt::Key_P, Qt::Key_Shift}) {
        QVERIFY(noted.contains({QEvent::KeyPress, key}));
        QVERIFY(noted.contains({QEvent::KeyRelease, key}));
    }
}

void tst_KeyDispatch::registryReloadedByAShortcut()
{
    m_receiver->whileActing = [this] { _registry().loadCurrentShortcuts(); };
    type(Qt::Key_P);
    type(Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived());
    QCOMPARE(m_receiver->sent, (QStringList{"play 0", "play 1"}));
}

QW_KEY_DISPATCH_MAIN(tst_KeyDispatch)
#include "tst_KeyDispatch.moc"
