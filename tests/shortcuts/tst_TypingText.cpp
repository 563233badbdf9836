#include "ShortcutHost.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/FirstResponder.h>
#include <QWPlatform/appkit/WebView.h>
#include <QWPlatform/linux/LinuxWebViews.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QFontComboBox>
#include <QGraphicsTextItem>
#include <QGraphicsView>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace
{
using Make = std::function<QWidget *()>;

template <class Widget>
Make plain()
{
    return [] { return new Widget; };
}

template <class Widget>
Make readOnly()
{
    return [] {
        auto *const widget = new Widget;
        widget->setReadOnly(true);
        return widget;
    };
}

QWidget *editableCombo()
{
    auto *const combo = new QComboBox;
    combo->setEditable(true);
    return combo;
}

QWidget *editableLabel()
{
    auto *const label = new QLabel("text");
    label->setTextInteractionFlags(Qt::TextEditorInteraction);
    return label;
}

QWidget *sceneWithText()
{
    auto *const view = new QGraphicsView;
    auto *const scene = new QGraphicsScene(view);
    auto *const item = scene->addText("text");
    item->setTextInteractionFlags(Qt::TextEditorInteraction);
    scene->setFocusItem(item);
    view->setScene(scene);
    return view;
}

QWidget *renamedRow()
{
    auto *const tree = new QTreeWidget;
    auto *const row = new QTreeWidgetItem({"name"});
    row->setFlags(row->flags() | Qt::ItemIsEditable);
    tree->addTopLevelItem(row);
    QMetaObject::invokeMethod(
        tree, [tree, row] { tree->editItem(row); }, Qt::QueuedConnection);
    return tree;
}
} // namespace

Q_DECLARE_METATYPE(Make)

/// Every letter, digit and some other keys are shortcuts, with and without Shift.
class tst_TypingText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void nothingFires_data();
    void nothingFires();
    void nothingFiresInAWebView();
    void everythingFiresElsewhere_data();
    void everythingFiresElsewhere();

private:
    bool _showWithFocus(QWidget *widget);
    void _type();

    std::unique_ptr<ShortcutSystem> m_system;
    std::unique_ptr<ShortcutReceiver> m_receiver;
    std::unique_ptr<QWidget> m_window;
};

void tst_TypingText::init()
{
    QVariantList all;
    for (char16_t c = '!'; c <= '~'; ++c) {
        for (const quint32 modifiers : {0u, 0x20000u})
            all.append(shortcutState(QString(QChar(c)), "play:", c, modifiers));
    }
    for (const char16_t c : {9, 13, 25, 32, 127, 0xf700, 0xf701, 0xf702, 0xf703, 0xf728, 0xf729, 0xf72b})
        all.append(shortcutState("key", "play:", c));
    m_system = std::make_unique<ShortcutSystem>(QVariantList{groupState("All", all)});
    m_receiver = std::make_unique<ShortcutReceiver>();
    m_window = std::make_unique<QWidget>();
    new QVBoxLayout(m_window.get());
    QWKeyboardShortcuts::loadShortcuts();
}

void tst_TypingText::cleanup()
{
    m_window.reset();
    m_receiver.reset();
    m_system.reset();
}

/// The window takes the widget.
bool tst_TypingText::_showWithFocus(QWidget *widget)
{
    widget->setFocusPolicy(Qt::StrongFocus);
    m_window->layout()->addWidget(widget);
    m_window->show();
    widget->setFocus();
    return QTest::qWaitForWindowActive(m_window.get());
}

void tst_TypingText::_type()
{
    for (const int key : {Qt::Key_A, Qt::Key_Z, Qt::Key_5, Qt::Key_Space, Qt::Key_Period, Qt::Key_Left,
                          Qt::Key_Backspace, Qt::Key_Up, Qt::Key_Home, Qt::Key_P}) {
        QTest::keyClick(m_window->windowHandle(), Qt::Key(key));
        if (QApplication::focusWidget())
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
    }
}

void tst_TypingText::nothingFires_data()
{
    QTest::addColumn<Make>("make");
    QTest::newRow("line edit") << plain<QLineEdit>();
    QTest::newRow("read-only line edit") << readOnly<QLineEdit>();
    QTest::newRow("text edit") << plain<QTextEdit>();
    QTest::newRow("read-only text edit") << readOnly<QTextEdit>();
    QTest::newRow("plain text edit") << plain<QPlainTextEdit>();
    QTest::newRow("read-only plain text edit") << readOnly<QPlainTextEdit>();
    QTest::newRow("text browser") << plain<QTextBrowser>();
    QTest::newRow("spin box") << plain<QSpinBox>();
    QTest::newRow("read-only spin box") << readOnly<QSpinBox>();
    QTest::newRow("double spin box") << plain<QDoubleSpinBox>();
    QTest::newRow("date") << plain<QDateEdit>();
    QTest::newRow("time") << plain<QTimeEdit>();
    QTest::newRow("date and time") << plain<QDateTimeEdit>();
    QTest::newRow("editable combo box") << Make(editableCombo);
    QTest::newRow("font combo box") << plain<QFontComboBox>();
    QTest::newRow("key sequence edit") << plain<QKeySequenceEdit>();
    QTest::newRow("editable label") << Make(editableLabel);
    QTest::newRow("text in a scene") << Make(sceneWithText);
    QTest::newRow("row being renamed") << Make(renamedRow);
}

void tst_TypingText::nothingFires()
{
    QFETCH(Make, make);
    QVERIFY(_showWithFocus(make()));
    QTRY_VERIFY(platform::isTypingText());
    _type();
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_TypingText::nothingFiresInAWebView()
{
    platform::LinuxWebViews views;
    const auto view = views.make(m_window.get());
    QWidget *const page = view->widget();
    m_window->layout()->addWidget(page);
    m_window->resize(400, 300);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    for (const char *html : {"<input autofocus>", "<p>No field</p>"}) {
        QSignalSpy loaded(view.get(), &platform::WebView::loadFinished);
        view->loadHtml(html, {});
        QVERIFY(loaded.wait(20'000));
        page->setFocus();
        QTRY_VERIFY(page->isAncestorOf(QApplication::focusWidget()));
        QTRY_VERIFY(platform::isTypingText());
        _type();
        QCOMPARE(m_receiver->sent, QStringList());
    }
}

void tst_TypingText::everythingFiresElsewhere_data()
{
    QTest::addColumn<Make>("make");
    QTest::newRow("button") << plain<QPushButton>();
    QTest::newRow("combo box") << plain<QComboBox>();
    QTest::newRow("scene without text") << plain<QGraphicsView>();
    QTest::newRow("label") << plain<QLabel>();
    QTest::newRow("widget") << plain<QWidget>();
}

void tst_TypingText::everythingFiresElsewhere()
{
    QFETCH(Make, make);
    QWidget *const widget = make();
    QVERIFY(_showWithFocus(widget));
    QTRY_COMPARE(QApplication::focusWidget(), widget);
    _type();
    QCOMPARE(m_receiver->sent.size(), 20);
}

QW_TEST_MAIN(tst_TypingText)
#include "tst_TypingText.moc"
