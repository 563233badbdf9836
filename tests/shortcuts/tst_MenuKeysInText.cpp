#include "KeyRouteTest.h"
#include "TextWidgets.h"

#include <QWPlatform/appkit/responders/FirstResponder.h>

#include <QSignalSpy>

using platform::addMenuItem;
using platform::MenuItem;

namespace
{
QString textOf(const QWidget &widget)
{
    for (const char *const name : {"text", "plainText", "currentText"}) {
        if (const QVariant text = widget.property(name); text.isValid())
            return text.toString();
    }
    return {};
}
} // namespace

/// Keys of menu items while a text has the focus.
class tst_MenuKeysInText : public KeyRouteTest
{
    Q_OBJECT

private Q_SLOTS:
    void commandsWorkInEveryText_data() { textWidgets(); }
    void commandsWorkInEveryText();
    void whatIsTypedStaysTheTexts_data() { textWidgets(); }
    void whatIsTypedStaysTheTexts();
    void altGrTypes();
    void editingStaysTheTexts();
    void readOnlyTextsKeepCopyAndSelectAllOnly_data();
    void readOnlyTextsKeepCopyAndSelectAllOnly();
    void qtsOwnActionsGoFirst();

private:
    void _add(const QString &title, const QString &key, quint32 modifiers);
    QWidget *_focus(const MakeWidget &make);

    QStringList m_chosen;
};

/// An item that notes its title.
void tst_MenuKeysInText::_add(const QString &title, const QString &key, quint32 modifiers)
{
    MenuItem *const item = addMenuItem(*m_window->menu, title, {}, key, modifiers);
    connect(item, &QAction::triggered, this, [this, title] { m_chosen.append(title); });
}

QWidget *tst_MenuKeysInText::_focus(const MakeWidget &make)
{
    m_chosen.clear();
    QWidget *const widget = m_window->add(make());
    if (!QTest::qWaitFor([] { return platform::isTypingText(); }))
        return nullptr;
    return widget;
}

void tst_MenuKeysInText::commandsWorkInEveryText()
{
    QFETCH(const MakeWidget, make);
    _add("Save", "s", MenuItem::Command);
    _add("Save As", "S", MenuItem::Command);
    _add("Close", "w", MenuItem::Command);
    _add("Quit", "q", MenuItem::Command);
    _add("Option", "o", MenuItem::Option);
    _add("Control", "d", MenuItem::Control);
    _add("Function", QChar(0xf709), 0);
    QWidget *const text = _focus(make);
    QVERIFY(text);
    const QString before = textOf(*text);
    type(Qt::Key_S, Qt::ControlModifier);
    type(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    type(Qt::Key_W, Qt::ControlModifier);
    type(Qt::Key_Q, Qt::ControlModifier);
    type(Qt::Key_O, Qt::AltModifier);
    type(Qt::Key_D, Qt::MetaModifier);
    type(Qt::Key_F6);
    QTRY_COMPARE(m_chosen, (QStringList{"Save", "Save As", "Close", "Quit", "Option", "Control", "Function"}));
    QCOMPARE(textOf(*text), before);
}

void tst_MenuKeysInText::whatIsTypedStaysTheTexts()
{
    QFETCH(const MakeWidget, make);
    _add("Letter", "o", 0);
    _add("Capital", "O", 0);
    _add("Space", " ", 0);
    _add("Arrow", QChar(0xf702), 0);
    _add("Function", QChar(0xf709), 0);
    QVERIFY(_focus(make));
    type(Qt::Key_O);
    type(Qt::Key_O, Qt::ShiftModifier);
    type(Qt::Key_Space);
    type(Qt::Key_Left);
    type(Qt::Key_F6); // the last one tells that the others have come
    QTRY_COMPARE(m_chosen, QStringList("Function"));
}

/// It comes as Ctrl and Alt with the text that it types.
void tst_MenuKeysInText::altGrTypes()
{
    _add("Euro", "e", MenuItem::Command | MenuItem::Option);
    auto *const field = m_window->add(new QLineEdit);
    QTRY_COMPARE(QApplication::focusWidget(), field);
    m_chosen.clear();
    QKeyEvent altGr(QEvent::KeyPress, Qt::Key_E, Qt::ControlModifier | Qt::AltModifier, "€");
    QCoreApplication::sendEvent(field, &altGr);
    QCOMPARE(field->text(), QString("€"));
    QCOMPARE(m_chosen, QStringList());
    QKeyEvent both(QEvent::KeyPress, Qt::Key_E, Qt::ControlModifier | Qt::AltModifier, "\x05");
    QCoreApplication::sendEvent(field, &both);
    QCOMPARE(field->text(), QString("€"));
    QCOMPARE(m_chosen, QStringList("Euro"));
}

void tst_MenuKeysInText::editingStaysTheTexts()
{
    for (const char key : {'a', 'c', 'x', 'v', 'z'})
        _add(QChar(key), QChar(key), MenuItem::Command);
    _add("Function", QChar(0xf709), 0);
    auto *const field = m_window->add(new QLineEdit("words"));
    QTRY_COMPARE(QApplication::focusWidget(), field);
    m_chosen.clear();
    for (const int key : {Qt::Key_A, Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_V, Qt::Key_Z})
        type(key, Qt::ControlModifier);
    type(Qt::Key_F6);
    QTRY_COMPARE(m_chosen, QStringList("Function"));
    QCOMPARE(field->text(), QString("words"));
}

void tst_MenuKeysInText::readOnlyTextsKeepCopyAndSelectAllOnly_data()
{
    QTest::addColumn<MakeWidget>("make");
    QTest::newRow("line edit") << readOnly<QLineEdit>();
    QTest::newRow("spin box") << readOnly<QSpinBox>();
    QTest::newRow("text edit") << readOnly<QTextEdit>();
    QTest::newRow("plain text edit") << readOnly<QPlainTextEdit>();
    QTest::newRow("text browser") << plain<QTextBrowser>();
}

void tst_MenuKeysInText::readOnlyTextsKeepCopyAndSelectAllOnly()
{
    QFETCH(const MakeWidget, make);
    for (const char key : {'a', 'c', 'x', 'v', 'z'})
        _add(QChar(key), QChar(key), MenuItem::Command);
    QVERIFY(_focus(make));
    for (const int key : {Qt::Key_A, Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_Z})
        type(key, Qt::ControlModifier);
    QTRY_COMPARE(m_chosen, (QStringList{"x", "v", "z"}));
}

void tst_MenuKeysInText::qtsOwnActionsGoFirst()
{
    _add("Menu", "o", MenuItem::Option);
    QAction action;
    const QSignalSpy triggered(&action, &QAction::triggered);
    action.setShortcut(Qt::ALT | Qt::Key_O);
    m_window->addAction(&action);
    QVERIFY(_focus(plain<QLineEdit>()));
    if (route() == Route::Sent)
        QSKIP("a press that a program sends asks no action");
    type(Qt::Key_O, Qt::AltModifier);
    QTRY_COMPARE(triggered.size(), 1);
    QCOMPARE(m_chosen, QStringList());
}

QW_KEY_DISPATCH_MAIN(tst_MenuKeysInText)
#include "tst_MenuKeysInText.moc"
