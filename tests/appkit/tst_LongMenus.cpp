#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#ifdef QW_TEST_ON_X
#include "shortcuts/XServer.h"
#endif

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/Theme.h>

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTest>
#include <QWheelEvent>

using platform::addMenuItem;
using platform::ThemeChoice;

namespace
{
constexpr int effects = 126;

QString effect(int number)
{
    return QString("%1 Effect %2").arg(QChar('A' + number % 20)).arg(number);
}

/// As one maker's submenu of a menu of effects.
void fill(QMenu &menu)
{
    for (int i = 0; i < effects; ++i)
        addMenuItem(menu, effect(i));
}

QRect areaFor(const QMenu &menu)
{
    return menu.screen()->availableGeometry();
}

/// But for the line around it: the off-screen platform gives windows margins.
bool isOnScreen(const QMenu &menu)
{
    constexpr int line = 2;
    return areaFor(menu).contains(menu.geometry().adjusted(line, line, -line, -line));
}

bool shows(const QMenu &menu, const QAction *item)
{
    const QRect inside = menu.actionGeometry(const_cast<QAction *>(item)).translated(menu.pos());
    return !inside.isEmpty() && menu.geometry().contains(inside) && areaFor(menu).contains(inside);
}

using Choose = std::function<void()>;

/// Nothing but the style; for hosts that choose one of the toolkit's after the application object was made.
Choose styleNamed(const QString &name)
{
    return [name] { QApplication::setStyle(QStyleFactory::create(name)); };
}

Choose theme(ThemeChoice choice)
{
    return [choice] { platform::applyTheme(*qApp, choice); };
}
} // namespace

Q_DECLARE_METATYPE(Choose)

/// Menus longer than the screen.
class tst_LongMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void staysOnTheScreenAndScrollsByKeys_data() { _looks(); }
    void staysOnTheScreenAndScrollsByKeys();
    void scrollsByWheel_data() { _looks(); }
    void scrollsByWheel();
    void touchpadsScrollByWhatTheyMoved();
    void submenuOfTheMenuBarScrolls();
    void menuWithASheetOfItsOwnScrolls();
    void lettersFindAnItem();
    void lettersBeginAnewAfterAWhile();
    void oneLetterGoesThroughItsItems();
    void wordsAreFoundWhereNoItemBeginsSo();
    void spaceBelongsToATitleElseItChooses();
    void lettersPassSubmenusAndDisabledItems();
    void mnemonicsStayTheMenus();
#ifdef QW_TEST_ON_X
    void realWheelAndRealKeysWork();
#endif

private:
    void _looks() const;
    void _popUp(QMenu &menu);
    void _press(int key, const QString &text = {});
    void _type(const QString &text);
    void _wheel(QMenu &menu, int delta);

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
};

void tst_LongMenus::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<platform::SystemScope>(*m_system);
}

void tst_LongMenus::cleanup()
{
    m_scope.reset();
    m_system.reset();
    platform::applyTheme(*qApp, ThemeChoice::Light);
}

void tst_LongMenus::_looks() const
{
    QTest::addColumn<Choose>("choose");
    QTest::newRow("light") << theme(ThemeChoice::Light);
    QTest::newRow("dark") << theme(ThemeChoice::Dark);
    QTest::newRow("desktop") << theme(ThemeChoice::System);
    for (const QString &name : QStyleFactory::keys())
        QTest::newRow(qPrintable(name)) << styleNamed(name);
}

void tst_LongMenus::_popUp(QMenu &menu)
{
    menu.popup(areaFor(menu).center());
    QTRY_VERIFY(menu.isVisible());
    QTRY_COMPARE(QApplication::activePopupWidget(), &menu);
}

void tst_LongMenus::_press(int key, const QString &text)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(QApplication::activePopupWidget(), &press);
}

void tst_LongMenus::_type(const QString &text)
{
    for (const QChar letter : text)
        _press(letter.toUpper().unicode(), letter);
}

/// In eighths of a degree, 120 a notch.
void tst_LongMenus::_wheel(QMenu &menu, int delta)
{
    const QPointF center = menu.rect().center();
    QWheelEvent event(center, menu.mapToGlobal(center), {}, QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&menu, &event);
}

void tst_LongMenus::staysOnTheScreenAndScrollsByKeys()
{
    QFETCH(const Choose, choose);
    choose();
    QMenu menu;
    fill(menu);
    _popUp(menu);
    QVERIFY2(isOnScreen(menu), qPrintable(QDebug::toString(menu.geometry())));
    QVERIFY(!shows(menu, menu.actions().last()));
    for (int i = 0; i < effects; ++i) {
        _press(Qt::Key_Down);
        QCOMPARE(menu.activeAction(), menu.actions().at(i));
        QVERIFY2(shows(menu, menu.activeAction()), qPrintable(QString::number(i)));
    }
    _press(Qt::Key_Home);
    QVERIFY(shows(menu, menu.actions().first()));
    _press(Qt::Key_PageDown);
    QVERIFY(shows(menu, menu.activeAction()));
    _press(Qt::Key_End);
    QCOMPARE(menu.activeAction(), menu.actions().last());
    QVERIFY(shows(menu, menu.actions().last()));
}

void tst_LongMenus::scrollsByWheel()
{
    QFETCH(const Choose, choose);
    choose();
    QMenu menu;
    fill(menu);
    _popUp(menu);
    constexpr int notch = 120;
    int notches = 0;
    for (; !shows(menu, menu.actions().last()) && notches < effects; ++notches)
        _wheel(menu, -notch);
    QVERIFY2(notches <= effects / QApplication::wheelScrollLines() + 1, qPrintable(QString::number(notches)));
    for (int i = 0; i < notches; ++i)
        _wheel(menu, notch);
    QVERIFY(shows(menu, menu.actions().first()));
}

void tst_LongMenus::touchpadsScrollByWhatTheyMoved()
{
    QMenu menu;
    fill(menu);
    _popUp(menu);
    const int top = menu.actionGeometry(menu.actions().at(5)).top();
    for (int i = 0; i < 20; ++i)
        _wheel(menu, 0); // a gesture's end, or a movement to the side
    QCOMPARE(menu.actionGeometry(menu.actions().at(5)).top(), top);
    const int line = 120 / QApplication::wheelScrollLines();
    for (int i = 0; i < 10; ++i)
        _wheel(menu, -line / 10);
    const int below = menu.actionGeometry(menu.actions().at(5)).top();
    QVERIFY(below < top);
    QVERIFY(top - below <= 2 * menu.actionGeometry(menu.actions().at(5)).height());
}

void tst_LongMenus::submenuOfTheMenuBarScrolls()
{
    QMainWindow window;
    QMenu *const top = window.menuBar()->addMenu("Effects");
    QMenu *const maker = platform::addSubmenu(*top, "Acme");
    fill(*maker);
    window.show();
    window.activateWindow(); // there may be no window manager
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.menuBar()->setActiveAction(top->menuAction());
    QTRY_COMPARE(QApplication::activePopupWidget(), top);
    _press(Qt::Key_Down);
    _press(Qt::Key_Right);
    QTRY_COMPARE(QApplication::activePopupWidget(), maker);
    QVERIFY(isOnScreen(*maker));
    _press(Qt::Key_End);
    QVERIFY(shows(*maker, maker->actions().last()));
    _type("c effect 82");
    QCOMPARE(maker->activeAction()->text(), effect(82));
    QVERIFY(shows(*maker, maker->activeAction()));
    maker->close();
    top->close();
}

void tst_LongMenus::menuWithASheetOfItsOwnScrolls()
{
    QMenu menu;
    menu.setStyleSheet("QMenu { margin: 1px; }");
    fill(menu);
    _popUp(menu);
    QVERIFY(isOnScreen(menu));
    _press(Qt::Key_End);
    QVERIFY(shows(menu, menu.actions().last()));
}

void tst_LongMenus::lettersFindAnItem()
{
    QMenu menu;
    fill(menu);
    _popUp(menu);
    _type("q");
    QCOMPARE(menu.activeAction()->text(), effect(16));
    _type(" effect 11");
    QCOMPARE(menu.activeAction()->text(), effect(116));
    QVERIFY(shows(menu, menu.activeAction()));
    _type("x"); // no such item: what was found stays
    QCOMPARE(menu.activeAction()->text(), effect(116));
    QSignalSpy chosen(menu.activeAction(), &QAction::triggered);
    _press(Qt::Key_Return, "\r");
    QCOMPARE(chosen.size(), 1);
}

void tst_LongMenus::lettersBeginAnewAfterAWhile()
{
    QMenu menu;
    fill(menu);
    _popUp(menu);
    _type("b");
    QCOMPARE(menu.activeAction()->text(), effect(1));
    m_system->clock.advance(std::chrono::seconds(2));
    _type("c");
    QCOMPARE(menu.activeAction()->text(), effect(2));
    _press(Qt::Key_Down);
    _type("e"); // an arrow ends a word as well
    QCOMPARE(menu.activeAction()->text(), effect(4));
}

void tst_LongMenus::oneLetterGoesThroughItsItems()
{
    QMenu menu;
    fill(menu);
    _popUp(menu);
    for (const int number : {3, 23, 43, 63, 83, 103, 123, 3}) {
        _type("d");
        QCOMPARE(menu.activeAction()->text(), effect(number));
    }
}

void tst_LongMenus::wordsAreFoundWhereNoItemBeginsSo()
{
    QMenu menu;
    for (const char *const title : {"Acme Compressor", "Acme Prereverb", "Acme Reverb"})
        addMenuItem(menu, title);
    _popUp(menu);
    _type("rev");
    QCOMPARE(menu.activeAction(), menu.actions().last());
}

void tst_LongMenus::spaceBelongsToATitleElseItChooses()
{
    QMenu menu;
    for (const char *const title : {"Acme", "Acme Reverb", "Bell"})
        addMenuItem(menu, title);
    _popUp(menu);
    _type("acme ");
    QCOMPARE(menu.activeAction(), menu.actions().at(1));
    QVERIFY(menu.isVisible());
    m_system->clock.advance(std::chrono::seconds(2));
    _type("bell");
    QCOMPARE(menu.activeAction(), menu.actions().at(2));
}

/// A submenu does not open under the letters, or it would take the next ones.
void tst_LongMenus::lettersPassSubmenusAndDisabledItems()
{
    QMenu menu;
    for (const char *const title : {"Acme", "Adagio", "Bell", "Beta"})
        addMenuItem(*platform::addSubmenu(menu, title), "Inner");
    addMenuItem(menu, "Bex")->setEnabled(false);
    addMenuItem(menu, "Bexter");
    _popUp(menu);
    _type("ad");
    QCOMPARE(menu.activeAction(), menu.actions().at(1));
    m_system->clock.advance(std::chrono::seconds(2));
    _type("bet");
    QCOMPARE(menu.activeAction(), menu.actions().at(3));
    QCOMPARE(QApplication::activePopupWidget(), &menu);
    m_system->clock.advance(std::chrono::seconds(2));
    _type("bex");
    QCOMPARE(menu.activeAction(), menu.actions().at(5));
    m_system->clock.advance(std::chrono::seconds(2));
    _type("be");
    _press(Qt::Key_Right);
    QTRY_COMPARE(QApplication::activePopupWidget(), menu.actions().at(2)->menu());
    menu.close();
}

void tst_LongMenus::mnemonicsStayTheMenus()
{
    QMenu menu;
    menu.addAction("Pause");
    QAction *const quiet = menu.addAction("Keep &Quiet");
    menu.addAction("Quit");
    QSignalSpy chosen(quiet, &QAction::triggered);
    _popUp(menu);
    _type("p");
    QCOMPARE(menu.activeAction(), menu.actions().first());
    m_system->clock.advance(std::chrono::seconds(2));
    _type("q");
    QCOMPARE(chosen.size(), 1);
    QVERIFY(!menu.isVisible());
}

#ifdef QW_TEST_ON_X
void tst_LongMenus::realWheelAndRealKeysWork()
{
    QMenu menu;
    fill(menu);
    _popUp(menu);
    const QPoint middle = menu.geometry().center() * menu.devicePixelRatio();
    QVERIFY(XServer::act({"mousemove", QString::number(middle.x()), QString::number(middle.y())}));
    for (int i = 0; i < effects && !shows(menu, menu.actions().last()); ++i) {
        const int before = menu.actionGeometry(menu.actions().last()).top();
        QVERIFY(XServer::act({"click", "5"}));
        QTRY_VERIFY(menu.actionGeometry(menu.actions().last()).top() < before);
    }
    QVERIFY(shows(menu, menu.actions().last()));
    QVERIFY(XServer::act({"type", "d effect 4"}));
    QTRY_COMPARE(menu.activeAction(), menu.actions().at(43));
    QVERIFY(XServer::act({"key", "End"}));
    QTRY_COMPARE(menu.activeAction(), menu.actions().last());
    QVERIFY(shows(menu, menu.actions().last()));
}

int main(int argc, char **argv)
{
    const XServer server;
    if (!server.isRunning())
        qFatal("Xvfb does not start");
    qputenv("QT_SCALE_FACTOR", QW_TEST_ON_X);
    QWApplication application(argc, argv);
    tst_LongMenus test;
    QTEST_SET_MAIN_SOURCE_PATH
    return qwtest::run(test, argc, argv);
}
#else
QW_TEST_MAIN(tst_LongMenus)
#endif
#include "tst_LongMenus.moc"
