#include "SampleShortcuts.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>

#include <QMenuBar>
#include <QSignalSpy>

using namespace sample;
using platform::MenuItem;

namespace
{
/// A window with a menu File that holds Save.
class Window : public QMainWindow
{
public:
    explicit Window(QWidget *parent = nullptr)
        : QMainWindow(parent, Qt::Window)
        , save(platform::addMenuItem(*menuBar()->addMenu("&File"), "Save"))
    {
    }

    bool bringToFront()
    {
        show();
        raise();
        activateWindow();
        return QTest::qWaitForWindowActive(this);
    }

    MenuItem *const save;
};

const QWShortcutKey ctrlS('s', command);
const QWShortcutKey ctrlK('k', command);

QWShortcut &saveShortcut()
{
    return *QWKeyboardShortcuts::sharedInstance().shortcutWithActionTag("save:", 0);
}
} // namespace

/// Items of the menu bars of several windows.
class tst_ShortcutMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyBarCarriesTheKeys();
    void keyChangedInFrontOfAnotherWindowIsChangedThereToo();
    void windowMadeLaterHasTheKeysWhenItShows();
    void windowFurnishedWhileHiddenHasTheKeysWhenItShows();
    void barThatComesIntoAShownWindowHasTheKeys();
    void barsOfWindowsBelowOthersAreKeptApart();
    void closedWindowIsKeptRight();
    void itemOfAnotherKindIsToldOnce();

private:
    QByteArray _log() const { return m_system->readFile("~/Library/Logs/Quorwell/Test Host.log").value_or(""); }

    std::unique_ptr<ShortcutSystem> m_system;
    std::unique_ptr<ShortcutReceiver> m_receiver;
};

void tst_ShortcutMenus::init()
{
    m_system = std::make_unique<ShortcutSystem>(factory);
    m_receiver = std::make_unique<ShortcutReceiver>();
}

void tst_ShortcutMenus::cleanup()
{
    m_receiver.reset();
    m_system.reset();
}

void tst_ShortcutMenus::everyBarCarriesTheKeys()
{
    Window windows[3];
    for (Window &window : windows)
        window.show();
    loaded();
    for (const Window &window : windows) {
        QCOMPARE(window.save->keyEquivalent(), QString("s"));
        QCOMPARE(window.save->action(), platform::Selector("save:"));
    }
    saveShortcut().setEnabled(false);
    for (const Window &window : windows)
        QCOMPARE(window.save->keyEquivalent(), QString());
    saveShortcut().setEnabled(true);
    QWKeyboardShortcuts::sharedInstance().loadCurrentShortcuts();
    for (const Window &window : windows)
        QCOMPARE(window.save->keyEquivalent(), QString("s"));
}

void tst_ShortcutMenus::keyChangedInFrontOfAnotherWindowIsChangedThereToo()
{
    Window a;
    Window b;
    QVERIFY(a.bringToFront());
    loaded();
    QVERIFY(b.bringToFront());
    saveShortcut().setKey(ctrlK);
    QCOMPARE(b.save->keyEquivalent(), QString("k"));
    QCOMPARE(a.save->keyEquivalent(), QString("k"));
    QVERIFY(a.bringToFront());
    QTest::keyClick(a.windowHandle(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(m_receiver->sent, QStringList());
    QTest::keyClick(a.windowHandle(), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(m_receiver->sent, QStringList("save 0"));
}

void tst_ShortcutMenus::windowMadeLaterHasTheKeysWhenItShows()
{
    Window first;
    first.show();
    loaded();
    saveShortcut().setKey(ctrlK);
    Window later;
    QCOMPARE(later.save->keyEquivalent(), QString());
    later.show();
    QCOMPARE(later.save->keyEquivalent(), QString("k"));
    QCOMPARE(later.save->action(), platform::Selector("save:"));
    QCOMPARE(first.save->keyEquivalent(), QString("k"));
}

void tst_ShortcutMenus::windowFurnishedWhileHiddenHasTheKeysWhenItShows()
{
    QMainWindow window;
    window.menuBar();
    window.show();
    loaded();
    window.hide();
    const MenuItem *const save = platform::addMenuItem(*window.menuBar()->addMenu("&File"), "Save");
    window.show();
    QCOMPARE(save->keyEquivalent(), QString("s"));
}

void tst_ShortcutMenus::barThatComesIntoAShownWindowHasTheKeys()
{
    QMainWindow window;
    window.show();
    loaded();
    auto *const bar = new QMenuBar;
    const MenuItem *const save = platform::addMenuItem(*bar->addMenu("&File"), "Save");
    window.setMenuBar(bar);
    QTRY_COMPARE(save->keyEquivalent(), QString("s"));
}

/// A window that is a child of another one is found below it.
void tst_ShortcutMenus::barsOfWindowsBelowOthersAreKeptApart()
{
    QMainWindow without;
    Window below(&without);
    QCOMPARE(platform::menuBarOf(&without), nullptr);
    QCOMPARE(platform::menuBarOf(&below), below.menuBar());
    QCOMPARE(platform::menuBars(), QList<QMenuBar *>{below.menuBar()});
    without.show();
    below.show();
    loaded();
    QCOMPARE(below.save->keyEquivalent(), QString("s"));
    below.setParent(nullptr);
}

void tst_ShortcutMenus::closedWindowIsKeptRight()
{
    Window a;
    Window b;
    QVERIFY(a.bringToFront());
    QVERIFY(b.bringToFront());
    loaded();
    a.close();
    saveShortcut().setKey(ctrlK);
    QCOMPARE(a.save->keyEquivalent(), QString("k"));
    saveShortcut().setKey(ctrlS);
    QCOMPARE(a.save->keyEquivalent(), QString("s"));
}

void tst_ShortcutMenus::itemOfAnotherKindIsToldOnce()
{
    QMainWindow window;
    QMenu *const file = window.menuBar()->addMenu("&File");
    QAction *const save = file->addAction("Save");
    window.show();
    auto &registry = loaded();
    registry.loadCurrentShortcuts();
    saveShortcut().setKey(ctrlK);
    QCOMPARE(save->text(), QString("Save"));
    QCOMPARE(_log().count("\"File>Save\" is no platform::MenuItem"), 1);
    QCOMPARE(_log().count("is no platform::MenuItem"), 1);
}

QW_TEST_MAIN(tst_ShortcutMenus)
#include "tst_ShortcutMenus.moc"
