#include "ShortcutHost.h"
#include "XServer.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/devices/KeyboardState.h>
#include <QWUtilities/shortcuts/ShortcutEditor.h>

#include <QDialog>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace
{
constexpr quint32 command = 0x100000;

/// How a key comes to the program.
enum class Route
{
    Window, ///< As from the window system, by way of the window object.
    Widget, ///< Straight to the focus widget, the question first.
    Sent,   ///< A key press that a program sends.
    X       ///< A real key of the X server.
};

bool onX()
{
    return QGuiApplication::platformName() == "xcb";
}

/// Writes down the keys that reach it.
class KeyLabel : public QLabel
{
public:
    KeyLabel()
        : QLabel("keys")
    {
        setFocusPolicy(Qt::StrongFocus);
        setMinimumSize(200, 60);
    }

    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress ||
            event->type() == QEvent::KeyRelease) {
            const int key = static_cast<QKeyEvent *>(event)->key();
            auto &list = event->type() == QEvent::KeyPress     ? presses
                         : event->type() == QEvent::KeyRelease ? releases
                                                               : questions;
            list.append(key);
        }
        return QLabel::event(event);
    }

    void keyPressEvent(QKeyEvent *event) override { event->ignore(); }

    QList<int> questions;
    QList<int> presses;
    QList<int> releases;
};

/// The main window of a host, with an item Play in its menu Transport.
class HostWindow : public QMainWindow
{
public:
    HostWindow()
    {
        menu = menuBar()->addMenu("&Transport");
        play = platform::addMenuItem(*menu, "Play");
        auto *const content = new QWidget;
        auto *const layout = new QVBoxLayout(content);
        layout->addWidget(&label);
        setCentralWidget(content);
        label.setFocus();
    }

    ~HostWindow() override { label.setParent(nullptr); }

    /// A widget of the window that gets the focus.
    template <class Widget>
    Widget *add()
    {
        auto *const widget = new Widget;
        centralWidget()->layout()->addWidget(widget);
        widget->setFocus();
        return widget;
    }

    KeyLabel label;
    QMenu *menu;
    platform::MenuItem *play;
};

bool activate(QWidget &window)
{
    window.show();
    window.raise();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

QString xName(int key, Qt::KeyboardModifiers modifiers)
{
    static const QHash<int, QString> names{{Qt::Key_Left, "Left"},
                                           {Qt::Key_Up, "Up"},
                                           {Qt::Key_Space, "space"},
                                           {Qt::Key_F5, "F5"},
                                           {Qt::Key_Return, "Return"}};
    const QString name = names.contains(key) ? names.value(key) : QString(QChar(key).toLower());
    return (modifiers & Qt::ControlModifier ? "ctrl+" : QString()) + (modifiers & Qt::ShiftModifier ? "shift+" : "") +
           name;
}

QString textOf(int key, Qt::KeyboardModifiers modifiers)
{
    return key < 0x1000000 && !(modifiers & Qt::ControlModifier) ? QString(QChar(key).toLower()) : QString();
}

/// Whatever has the focus gets it, except by Route::Window, whose receiver is a window.
QWidget *receiver()
{
    return QApplication::focusWidget() ? QApplication::focusWidget() : QApplication::activeWindow();
}

/// A key goes down and up.
void type(Route route, int key, Qt::KeyboardModifiers modifiers = {})
{
    const QString text = textOf(key, modifiers);
    switch (route) {
    case Route::Window:
        QTest::keyClick(QApplication::activeWindow()->windowHandle(), Qt::Key(key), modifiers);
        break;
    case Route::Widget:
        QTest::keyClick(receiver(), Qt::Key(key), modifiers);
        break;
    case Route::Sent: {
        QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
        QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
        const QPointer<QWidget> widget = receiver();
        QCoreApplication::sendEvent(widget, &press);
        if (widget)
            QCoreApplication::sendEvent(widget, &release);
        break;
    }
    case Route::X:
        QVERIFY(XServer::act({"key", xName(key, modifiers)}));
        break;
    }
}

/// Keys of X arrive some time later; one more, which is no shortcut, tells that those before it have.
bool arrived(Route route, const KeyLabel &label)
{
    if (route != Route::X)
        return true;
    const auto count = label.releases.count(Qt::Key_Z);
    return XServer::act({"key", "z"}) && QTest::qWaitFor([&] { return label.releases.count(Qt::Key_Z) > count; });
}

/// An editor that captures keys while its sheet is up.
class CapturingEditor : public qw::ShortcutEditor
{
public:
    void open() override {}
    void toggle() override {}
    QWidget *window() const override { return nullptr; }
    QWidget *setShortcutPanel() const override { return &sheet; }
    void doSetShortcut(const platform::KeyEvent &event) override { captured.push_back(event); }
    QString searchString() const override { return {}; }
    void clearSearchString() override {}
    void displayResultsDidChange() override {}
    QMenu *presetsMenu() const override { return nullptr; }
    QString presetName() const override { return {}; }

    std::vector<platform::KeyEvent> keysDown() const
    {
        std::vector<platform::KeyEvent> keys;
        std::copy_if(captured.begin(), captured.end(), std::back_inserter(keys),
                     [](const auto &event) { return event.type == platform::KeyEvent::KeyDown; });
        return keys;
    }

    mutable QDialog sheet;
    std::vector<platform::KeyEvent> captured;
};
} // namespace

/// P plays, Ctrl+P plays from the menu, S stops, the arrows and Space and F5 save.
class tst_KeyDispatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

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
    void registryReloadedByAShortcut_data() { routes(); }
    void registryReloadedByAShortcut();
    void panelsKeepTheirKeys_data();
    void panelsKeepTheirKeys();
    void openMenuKeepsItsKeys_data() { routes(); }
    void openMenuKeepsItsKeys();
    void listsKeepTheirArrows_data();
    void listsKeepTheirArrows();
    void textKeepsItsKeys_data() { routes(); }
    void textKeepsItsKeys();
    void captureSheetGetsEverything_data() { routes(); }
    void captureSheetGetsEverything();
    void filterTakesEventsOfNoOtherKind();
    void hostWithoutShortcutsIsLeftAlone();
    void layoutsGiveTheirOwnCharacters_data();
    void layoutsGiveTheirOwnCharacters();

private:
    static void routes();
    QWKeyboardShortcuts &_registry() { return QWKeyboardShortcuts::sharedInstance(); }

    std::unique_ptr<ShortcutSystem> m_system;
    std::unique_ptr<ShortcutReceiver> m_receiver;
    std::unique_ptr<HostWindow> m_window;
};

void tst_KeyDispatch::routes()
{
    QTest::addColumn<Route>("route");
    QTest::newRow("window") << Route::Window;
    QTest::newRow("widget") << Route::Widget;
    QTest::newRow("sent") << Route::Sent;
    if (onX())
        QTest::newRow("X") << Route::X;
}

void tst_KeyDispatch::init()
{
    QVariantList keys{shortcutState("Play", "play:", 'p'), shortcutState("Stop", "stop:", 's'),
                      shortcutState("Save", "save:", ' ')};
    for (const char16_t arrow : {0xf700, 0xf701, 0xf702, 0xf703, 0xf708})
        keys.append(shortcutState("Save", "save:", arrow));
    m_system = std::make_unique<ShortcutSystem>(QVariantList{
        groupState("Keys", keys), groupState("Transport", {shortcutState("Play", "play:", 'p', command, 1)}, true)});
    m_receiver = std::make_unique<ShortcutReceiver>();
    m_window = std::make_unique<HostWindow>();
    QVERIFY(activate(*m_window));
    QWKeyboardShortcuts::loadShortcuts();
}

void tst_KeyDispatch::cleanup()
{
    m_window.reset();
    m_receiver.reset();
    m_system.reset();
}

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

void tst_KeyDispatch::registryReloadedByAShortcut()
{
    QFETCH(Route, route);
    m_receiver->whileActing = [this] { _registry().loadCurrentShortcuts(); };
    type(route, Qt::Key_P);
    type(route, Qt::Key_P, Qt::ControlModifier);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, (QStringList{"play 0", "play 1"}));
}

namespace
{
enum class WindowKind
{
    Plain,
    Dialog,
    ModalDialog,
    FloatingDialog,
    FloatingPanel,
    OtherPanel,
    FilePanel
};

std::unique_ptr<QWidget> make(WindowKind kind)
{
    switch (kind) {
    case WindowKind::Plain:
        return std::make_unique<QWidget>();
    case WindowKind::FilePanel: {
        auto panel = std::make_unique<QFileDialog>();
        panel->setOption(QFileDialog::DontUseNativeDialog);
        panel->setWindowFlag(Qt::Tool);
        return panel;
    }
    case WindowKind::FloatingPanel:
    case WindowKind::OtherPanel: {
        auto panel = std::make_unique<platform::Panel>();
        panel->setFloating(kind == WindowKind::FloatingPanel);
        return panel;
    }
    default:
        break;
    }
    auto dialog = std::make_unique<QDialog>(nullptr, kind == WindowKind::FloatingDialog ? Qt::Tool : Qt::Dialog);
    dialog->setModal(kind == WindowKind::ModalDialog);
    return dialog;
}
} // namespace

void tst_KeyDispatch::panelsKeepTheirKeys_data()
{
    QTest::addColumn<WindowKind>("kind");
    QTest::addColumn<bool>("fires");
    QTest::newRow("plain window") << WindowKind::Plain << true;
    QTest::newRow("dialog") << WindowKind::Dialog << false;
    QTest::newRow("modal dialog") << WindowKind::ModalDialog << false;
    QTest::newRow("floating dialog") << WindowKind::FloatingDialog << true;
    QTest::newRow("floating panel") << WindowKind::FloatingPanel << true;
    QTest::newRow("other panel") << WindowKind::OtherPanel << false;
    QTest::newRow("file panel") << WindowKind::FilePanel << false;
}

void tst_KeyDispatch::panelsKeepTheirKeys()
{
    QFETCH(WindowKind, kind);
    QFETCH(bool, fires);
    const auto panel = make(kind);
    panel->resize(300, 200);
    auto *const button = new QPushButton("focus", panel.get());
    panel->show();
    button->setFocus();
    QVERIFY(activate(*panel));
    QCOMPARE(QApplication::activeWindow(), panel.get());
    button->setFocus();
    type(Route::Window, Qt::Key_P);
    type(Route::Window, Qt::Key_S);
    QCOMPARE(m_receiver->sent, fires ? (QStringList{"play 0", "stop 0"}) : QStringList());
}

void tst_KeyDispatch::openMenuKeepsItsKeys()
{
    QFETCH(Route, route);
    QMenu popup;
    popup.addAction("&Quiet");
    popup.addAction("&Panic");
    QStringList chosen;
    connect(&popup, &QMenu::triggered, this, [&](QAction *action) { chosen.append(action->text()); });
    popup.popup(m_window->geometry().center());
    QTRY_VERIFY(popup.isVisible());
    if (route == Route::Widget || route == Route::Sent)
        QTest::keyClick(&popup, Qt::Key_P);
    else
        type(route, Qt::Key_P);
    QTRY_COMPARE(chosen, QStringList{"&Panic"});
    QTRY_VERIFY(!popup.isVisible());
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_KeyDispatch::listsKeepTheirArrows_data()
{
    QTest::addColumn<Route>("route");
    QTest::addColumn<QString>("list");
    QTest::addColumn<bool>("keepsHorizontal");
    const QList<std::pair<const char *, Route>> all =
        onX() ? QList<std::pair<const char *, Route>>{{"window", Route::Window}, {"X", Route::X}}
              : QList<std::pair<const char *, Route>>{
                    {"window", Route::Window}, {"widget", Route::Widget}, {"sent", Route::Sent}};
    for (const auto &[name, route] : all) {
        QTest::addRow("outline, %s", name) << route << "outline" << true;
        QTest::addRow("table, %s", name) << route << "table" << false;
        QTest::addRow("list, %s", name) << route << "list" << false;
    }
}

void tst_KeyDispatch::listsKeepTheirArrows()
{
    QFETCH(Route, route);
    QFETCH(QString, list);
    QFETCH(bool, keepsHorizontal);
    QAbstractItemView *view = nullptr;
    if (list == "outline") {
        auto *const tree = m_window->add<QTreeWidget>();
        for (int i = 0; i < 3; ++i)
            tree->addTopLevelItem(new QTreeWidgetItem({"row"}));
        view = tree;
    } else if (list == "table") {
        auto *const table = m_window->add<QTableWidget>();
        table->setRowCount(3);
        table->setColumnCount(2);
        view = table;
    } else {
        auto *const rows = m_window->add<QListWidget>();
        rows->addItems({"a", "b", "c"});
        view = rows;
    }
    view->setCurrentIndex(view->model()->index(1, 0));
    QTRY_COMPARE(QApplication::focusWidget(), view);
    type(route, Qt::Key_Up);
    QTRY_COMPARE(view->currentIndex().row(), 0);
    QCOMPARE(m_receiver->sent, QStringList());
    type(route, Qt::Key_Left);
    if (!keepsHorizontal)
        QTRY_COMPARE(m_receiver->sent, QStringList{"save 0"});
    type(route, Qt::Key_P); // every other key is a shortcut, even where the list would search by it
    QTRY_VERIFY(m_receiver->sent.contains("play 0"));
    QCOMPARE(m_receiver->sent.count("save 0"), keepsHorizontal ? 0 : 1);
}

void tst_KeyDispatch::textKeepsItsKeys()
{
    QFETCH(Route, route);
    const auto *const edit = m_window->add<QLineEdit>();
    QTRY_COMPARE(QApplication::focusWidget(), edit);
    type(route, Qt::Key_P);
    type(route, Qt::Key_S);
    type(route, Qt::Key_Space);
    QTRY_COMPARE(edit->text(), QString("ps "));
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_KeyDispatch::captureSheetGetsEverything()
{
    QFETCH(Route, route);
    auto made = std::make_unique<CapturingEditor>();
    CapturingEditor &editor = *made;
    _registry().setEditor(std::move(made));
    auto *const button = new QPushButton("OK", &editor.sheet);
    int clicks = 0;
    connect(button, &QPushButton::clicked, this, [&] { ++clicks; });
    editor.sheet.resize(200, 100);
    QVERIFY(activate(editor.sheet));
    button->setFocus();
    type(route, Qt::Key_P);
    type(route, Qt::Key_Space);
    type(route, Qt::Key_X, Qt::ControlModifier);
    QTRY_COMPARE(editor.keysDown().size(), std::size_t(3));
    const auto keys = editor.keysDown();
    QCOMPARE(keys[0].character, u'p');
    QCOMPARE(keys[1].character, u' ');
    QCOMPARE(keys[2].character, u'x');
    QCOMPARE(keys[2].modifierFlags, command);
    QCOMPARE(m_receiver->sent, QStringList());
    QCOMPARE(clicks, 0);
    if (route == Route::X)
        QVERIFY(XServer::act({"key", "alt"}));
    else
        type(route, Qt::Key_Alt);
    const auto optionWentDown = [&](const platform::KeyEvent &event) {
        return event.type == platform::KeyEvent::FlagsChanged && event.modifierFlags == platform::KeyEvent::Option;
    };
    const auto wentDown = [&] { return std::find_if(editor.captured.begin(), editor.captured.end(), optionWentDown); };
    QTRY_VERIFY(wentDown() != editor.captured.end() && wentDown() + 1 != editor.captured.end());
    QCOMPARE((wentDown() + 1)->type, platform::KeyEvent::FlagsChanged);
    QCOMPARE((wentDown() + 1)->modifierFlags, 0u);
    editor.sheet.hide();
    QVERIFY(activate(*m_window));
    m_window->label.setFocus();
    type(route, Qt::Key_P);
    QVERIFY(arrived(route, m_window->label));
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
}

void tst_KeyDispatch::filterTakesEventsOfNoOtherKind()
{
    QVERIFY(!QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyRelease, Qt::Key_P, Qt::NoModifier, "p")));
    QVERIFY(!QWKeyboardShortcuts::performShortcut(QEvent(QEvent::MouseMove)));
    QVERIFY(QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyPress, Qt::Key_P, Qt::NoModifier, "p")));
    QVERIFY(QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier)));
    QVERIFY(QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyRelease, Qt::Key_Shift, Qt::NoModifier)));
    QVERIFY(!QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "x")));
    QVERIFY(!QWKeyboardShortcuts::performShortcut(QKeyEvent(QEvent::KeyPress, Qt::Key_VolumeUp, Qt::NoModifier)));
    QCOMPARE(m_receiver->sent, QStringList{"play 0"});
}

void tst_KeyDispatch::hostWithoutShortcutsIsLeftAlone()
{
    const ShortcutSystem other; // nobody asks for its registry
    type(Route::Window, Qt::Key_P);
    type(Route::Window, Qt::Key_Shift);
    QVERIFY(m_window->label.presses.contains(Qt::Key_P));
    QVERIFY(m_window->label.presses.contains(Qt::Key_Shift));
    QVERIFY(!other.readFile(other.path("_current.plist")));
}

void tst_KeyDispatch::layoutsGiveTheirOwnCharacters_data()
{
    if (!onX())
        QSKIP("only a real keyboard has layouts");
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("character");
    QTest::addColumn<quint32>("modifiers");
    const auto row = [](const char *layout, const char *keys, int character, quint32 modifiers) {
        QTest::addRow("%s: %s", layout, keys) << layout << keys << character << modifiers;
    };
    constexpr quint32 shift = 0x20000, control = 0x40000, option = 0x80000;
    // Physical keys by their codes: 38 is A, 39 S, 10 the digit 1, 49 left of it, 21 right of 0, 23 Tab.
    row("us", "38", 'a', 0);
    row("us", "shift+38", 'a', shift);
    row("us", "ctrl+shift+38", 'a', command | shift);
    row("us", "alt+38", 'a', option);
    row("us", "super+38", 'a', control);
    row("us", "ctrl+alt+38", 'a', command | option);
    row("us", "shift+10", '!', shift);
    row("us", "ctrl+shift+10", '!', command | shift);
    row("us", "shift+23", 25, shift);
    row("us", "23", 9, 0);
    row("us", "ctrl+65", ' ', command);
    row("us", "104", 3, 0);
    row("us", "36", 13, 0);
    row("us", "22", 127, 0);
    row("us", "ctrl+22", 127, command);
    row("us", "119", 0xf728, 0);
    row("us", "67", 0xf704, 0);
    row("us", "110", 0xf729, 0);
    row("us", "115", 0xf72b, 0);
    row("us", "112", 0xf72c, 0);
    row("us", "117", 0xf72d, 0);
    row("us", "111", 0xf700, 0);
    row("us", "ctrl+113", 0xf702, command);
    row("us", "83", 0xf702, 0); // keypad, Num Lock off
    row("us", "63", '*', 0);    // keypad
    row("ru", "38", 0x444, 0);
    row("ru", "shift+38", 0x444, shift);
    row("ru", "ctrl+38", 0x444, command);
    row("ru", "ctrl+shift+39", 0x44b, command | shift);
    row("ru", "alt+38", 0x444, option);
    row("gr", "ctrl+38", 0x3b1, command);
    row("de", "49", '^', 0);
    row("de", "ctrl+49", '^', command);
    row("de", "21", 0xb4, 0);
    row("de", "shift+21", '`', shift);
    row("de", "shift+48", 0xe4, shift);
    row("de", "ctrl+48", 0xe4, command);
    row("fr", "10", '&', 0);
    row("fr", "shift+10", '1', shift);
}

/// What a real key of a layout is captured as.
void tst_KeyDispatch::layoutsGiveTheirOwnCharacters()
{
    QFETCH(QString, layout);
    QFETCH(QString, keys);
    QVERIFY(XServer::setLayout(layout));
    auto made = std::make_unique<CapturingEditor>();
    CapturingEditor &editor = *made;
    _registry().setEditor(std::move(made));
    QVERIFY(activate(editor.sheet));
    QVERIFY(XServer::act({"key", keys}));
    QTRY_COMPARE(editor.keysDown().size(), std::size_t(1));
    QWShortcutKey key;
    key.setFromEvent(editor.keysDown().front());
    QVERIFY(XServer::setLayout("us"));
    QTEST(int(key.character()), "character");
    QTEST(key.modifiers(), "modifiers");
}

int main(int argc, char **argv)
{
#ifdef QW_TEST_ON_X
    const XServer server;
    if (!server.isRunning())
        qFatal("Xvfb does not start");
#endif
    QWApplication application(argc, argv);
    tst_KeyDispatch test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KeyDispatch.moc"
