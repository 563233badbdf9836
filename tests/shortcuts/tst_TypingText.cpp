#include "ShortcutHost.h"
#include "TextWidgets.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/appkit/responders/FirstResponder.h>

#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>

/// Every letter, digit and some other keys are shortcuts, with and without Shift.
class tst_TypingText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void nothingFires_data();
    void nothingFires();
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
    textWidgets();
    QTest::newRow("key sequence edit") << plain<QKeySequenceEdit>(); // takes every key, menus' too
}

void tst_TypingText::nothingFires()
{
    QFETCH(MakeWidget, make);
    QVERIFY(_showWithFocus(make()));
    QTRY_VERIFY(platform::isTypingText());
    _type();
    QCOMPARE(m_receiver->sent, QStringList());
}

void tst_TypingText::everythingFiresElsewhere_data()
{
    QTest::addColumn<MakeWidget>("make");
    QTest::newRow("button") << plain<QPushButton>();
    QTest::newRow("combo box") << plain<QComboBox>();
    QTest::newRow("scene without text") << plain<QGraphicsView>();
    QTest::newRow("label") << plain<QLabel>();
    QTest::newRow("widget") << plain<QWidget>();
}

void tst_TypingText::everythingFiresElsewhere()
{
    QFETCH(MakeWidget, make);
    QWidget *const widget = make();
    QVERIFY(_showWithFocus(widget));
    QTRY_COMPARE(QApplication::focusWidget(), widget);
    _type();
    QCOMPARE(m_receiver->sent.size(), 20);
}

QW_TEST_MAIN(tst_TypingText)
#include "tst_TypingText.moc"
