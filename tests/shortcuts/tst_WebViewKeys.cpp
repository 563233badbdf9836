#include "ShortcutHost.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/WebView.h>
#include <QWPlatform/appkit/responders/FirstResponder.h>
#include <QWPlatform/linux/desktop/LinuxWebViews.h>

#include <QMenuBar>
#include <QSignalSpy>
#include <QVBoxLayout>

using platform::addMenuItem;
using platform::MenuItem;

namespace
{
constexpr int patience = 30'000; ///< Milliseconds. The engine is another process, and starts with the first page.
} // namespace

/// Keys while a page of the real engine has the focus: shortcuts, and items of the menu.
class tst_WebViewKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void fieldsAreText_data();
    void fieldsAreText();
    void pageThatIsReadIsNoText();
    void commandsWorkInAField();
    void commandsWorkOnAPage();
    void whatIsTypedStaysTheFields();
    void textIsOneOnlyWhileItIsEdited();

private:
    bool _show(const QString &html);
    void _click(const QPoint &position = QPoint(60, 40));
    void _press(int key, Qt::KeyboardModifiers modifiers = {});
    void _add(const QString &title, const QString &key, quint32 modifiers);

    std::unique_ptr<ShortcutSystem> m_system;
    std::unique_ptr<ShortcutReceiver> m_receiver;
    std::unique_ptr<QMainWindow> m_window;
    std::unique_ptr<platform::WebView> m_view;
    platform::LinuxWebViews m_views;
    QMenu *m_menu = nullptr;
    QStringList m_chosen;
};

void tst_WebViewKeys::init()
{
    m_system = std::make_unique<ShortcutSystem>(
        QVariantList{groupState("All", {shortcutState("Play", "play:", 'p'), shortcutState("Stop", "stop:", ' '),
                                        shortcutState("Save", "save:", 's')})});
    m_receiver = std::make_unique<ShortcutReceiver>();
    m_window = std::make_unique<QMainWindow>();
    m_menu = m_window->menuBar()->addMenu("File");
    auto *const content = new QWidget;
    m_view = m_views.make(content);
    (new QVBoxLayout(content))->addWidget(m_view->widget());
    m_window->setCentralWidget(content);
    m_window->resize(400, 300);
    m_chosen.clear();
    QWKeyboardShortcuts::loadShortcuts();
}

void tst_WebViewKeys::cleanup()
{
    m_view.reset();
    m_window.reset();
    m_receiver.reset();
    m_system.reset();
}

bool tst_WebViewKeys::_show(const QString &html)
{
    m_window->show();
    QSignalSpy loaded(m_view.get(), &platform::WebView::loadFinished);
    m_view->loadHtml("<style>*{margin:0;width:100%;height:60px}</style>" + html, {});
    if (!QTest::qWaitForWindowActive(m_window.get()) || (loaded.isEmpty() && !loaded.wait(patience)))
        return false;
    m_view->widget()->setFocus();
    return QTest::qWaitFor([this] { return m_view->widget()->isAncestorOf(QApplication::focusWidget()); }, patience);
}

void tst_WebViewKeys::_click(const QPoint &position)
{
    QWidget *const page = QApplication::focusWidget();
    QTest::mouseClick(page, Qt::LeftButton, {}, page->mapFrom(m_view->widget(), position));
}

void tst_WebViewKeys::_press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_window->windowHandle(), Qt::Key(key), modifiers);
}

/// An item that notes its title.
void tst_WebViewKeys::_add(const QString &title, const QString &key, quint32 modifiers)
{
    MenuItem *const item = addMenuItem(*m_menu, title, {}, key, modifiers);
    connect(item, &QAction::triggered, this, [this, title] { m_chosen.append(title); });
}

void tst_WebViewKeys::fieldsAreText_data()
{
    QTest::addColumn<QString>("html");
    QTest::newRow("line") << "<input>";
    QTest::newRow("password") << "<input type=password>";
    QTest::newRow("search") << "<input type=search>";
    QTest::newRow("number") << "<input type=number>";
    QTest::newRow("area") << "<textarea></textarea>";
    QTest::newRow("editable paragraph") << "<p contenteditable>text</p>";
}

void tst_WebViewKeys::fieldsAreText()
{
    QFETCH(const QString, html);
    QVERIFY(_show(html));
    _click();
    QTRY_VERIFY_WITH_TIMEOUT(platform::isTypingText(), patience);
    for (const int key : {Qt::Key_P, Qt::Key_Space, Qt::Key_S})
        _press(key);
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_WebViewKeys::pageThatIsReadIsNoText()
{
    QVERIFY(_show("<p>Nothing to edit</p><button>Go</button><input type=checkbox>"));
    for (const QPoint &position : {QPoint(60, 40), QPoint(60, 90), QPoint(60, 150)}) {
        m_receiver->sent.clear();
        _click(position);
        QTRY_VERIFY_WITH_TIMEOUT(!platform::isTypingText(), patience);
        for (const int key : {Qt::Key_P, Qt::Key_Space, Qt::Key_S})
            _press(key);
        QCOMPARE(m_receiver->sent, (QStringList{"play 0", "stop 0", "save 0"}));
    }
}

/// The engine takes each press at first, and hands back what it has no use for some time later.
void tst_WebViewKeys::commandsWorkInAField()
{
    _add("Save", "s", MenuItem::Command);
    _add("Close", "w", MenuItem::Command);
    _add("Quit", "q", MenuItem::Command);
    _add("Function", QChar(0xf709), 0);
    _add("Option", "o", MenuItem::Option);
    _add("Control", "d", MenuItem::Control);
    QVERIFY(_show("<textarea>text</textarea>"));
    _click();
    QTRY_VERIFY_WITH_TIMEOUT(platform::isTypingText(), patience);
    const std::tuple<int, Qt::KeyboardModifiers, QString> presses[] = {
        {Qt::Key_S, Qt::ControlModifier, "Save"}, {Qt::Key_W, Qt::ControlModifier, "Close"},
        {Qt::Key_Q, Qt::ControlModifier, "Quit"}, {Qt::Key_F6, Qt::NoModifier, "Function"},
        {Qt::Key_O, Qt::AltModifier, "Option"},   {Qt::Key_D, Qt::MetaModifier, "Control"}};
    for (const auto &[key, modifiers, title] : presses) {
        m_chosen.clear();
        _press(key, modifiers);
        QTRY_COMPARE_WITH_TIMEOUT(m_chosen, QStringList(title), patience);
    }
    _press(Qt::Key_F6); // once each: a second round of one would have come before this
    QTRY_COMPARE_WITH_TIMEOUT(m_chosen, (QStringList{"Control", "Function"}), patience);
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_WebViewKeys::commandsWorkOnAPage()
{
    _add("Save", "s", MenuItem::Command);
    _add("Letter", "o", 0);
    QVERIFY(_show("<p>Nothing to edit</p>"));
    _press(Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE_WITH_TIMEOUT(m_chosen, QStringList("Save"), patience);
    _press(Qt::Key_O);
    QTRY_COMPARE_WITH_TIMEOUT(m_chosen, (QStringList{"Save", "Letter"}), patience);
}

void tst_WebViewKeys::whatIsTypedStaysTheFields()
{
    for (const char key : {'a', 'c', 'v', 'x', 'z'})
        _add(QChar(key), QChar(key), MenuItem::Command);
    _add("Letter", "o", 0);
    _add("Save", "s", MenuItem::Command);
    QVERIFY(_show("<textarea>text</textarea>"));
    _click();
    QTRY_VERIFY_WITH_TIMEOUT(platform::isTypingText(), patience);
    _press(Qt::Key_O);
    for (const int key : {Qt::Key_A, Qt::Key_C, Qt::Key_V, Qt::Key_X, Qt::Key_Z})
        _press(key, Qt::ControlModifier);
    _press(Qt::Key_S, Qt::ControlModifier); // the last one tells that the others have come
    QTRY_COMPARE_WITH_TIMEOUT(m_chosen, QStringList("Save"), patience);
}

void tst_WebViewKeys::textIsOneOnlyWhileItIsEdited()
{
    QVERIFY(_show("<input><p>Nothing to edit</p>"));
    _click();
    QTRY_VERIFY_WITH_TIMEOUT(platform::isTypingText(), patience);
    _press(Qt::Key_P);
    QCOMPARE(m_receiver->sent, QStringList());
    _click(QPoint(60, 100));
    QTRY_VERIFY_WITH_TIMEOUT(!platform::isTypingText(), patience);
    _press(Qt::Key_P);
    QCOMPARE(m_receiver->sent, QStringList("play 0"));
}

QW_TEST_MAIN(tst_WebViewKeys)
#include "tst_WebViewKeys.moc"
