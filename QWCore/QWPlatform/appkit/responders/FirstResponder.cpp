#include "FirstResponder.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QColumnView>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTextEdit>
#include <QTreeView>

namespace platform
{

namespace
{
constexpr auto commandModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

bool isTextClass(const QWidget *widget)
{
    return qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QTextEdit *>(widget) ||
           qobject_cast<const QPlainTextEdit *>(widget) || qobject_cast<const QAbstractSpinBox *>(widget) ||
           qobject_cast<const QKeySequenceEdit *>(widget);
}

FirstResponder kindOfClass(const QWidget *widget)
{
    if (isTextClass(widget))
        return FirstResponder::Text;
    if (qobject_cast<const QTreeView *>(widget) || qobject_cast<const QColumnView *>(widget))
        return FirstResponder::Outline;
    return qobject_cast<const QAbstractItemView *>(widget) ? FirstResponder::Table : FirstResponder::Other;
}

bool asksForInput(QObject *object)
{
    QInputMethodQueryEvent query(Qt::ImEnabled);
    QCoreApplication::sendEvent(object, &query);
    return query.value(Qt::ImEnabled).toBool();
}

/// Scenes, such as a web page, hand only the event on to what has the focus within. By name: their modules are loaded
/// on demand.
bool takesInput(QWidget *widget)
{
    const auto *const label = qobject_cast<const QLabel *>(widget);
    if (label && label->textInteractionFlags() & (Qt::TextEditable | Qt::TextSelectableByKeyboard))
        return true;
    return widget->inherits("QQuickWidget") ? asksForInput(widget) : widget->inputMethodQuery(Qt::ImEnabled).toBool();
}

/// Of a window that is no widget, such as a scene of its own.
bool focusObjectTakesInput()
{
    QObject *const object = QGuiApplication::focusObject();
    return object && !object->isWidgetType() && asksForInput(object);
}

bool hasPrintedText(const QKeyEvent &press)
{
    return !press.text().isEmpty() && press.text().at(0).isPrint();
}

bool isAltGr(const QKeyEvent &press)
{
    constexpr auto altGr = Qt::ControlModifier | Qt::AltModifier;
    return (press.modifiers() & commandModifiers) == altGr && hasPrintedText(press);
}

bool changesText(const QKeyEvent &press)
{
    return press.matches(QKeySequence::Undo) || press.matches(QKeySequence::Redo) || press.matches(QKeySequence::Cut) ||
           press.matches(QKeySequence::Paste);
}
} // namespace

FirstResponder firstResponder()
{
    static QPointer<QWidget> last;
    static FirstResponder lastKind = FirstResponder::Other;
    QWidget *const focus = QApplication::focusWidget();
    if (!focus)
        return focusObjectTakesInput() ? FirstResponder::Text : FirstResponder::Other;
    if (focus != last) {
        last = focus;
        lastKind = kindOfClass(focus);
    }
    // Views of scenes and labels take text at times only. Lists answer for the item that could be edited, not for now.
    return lastKind == FirstResponder::Other && takesInput(focus) ? FirstResponder::Text : lastKind;
}

bool isTypingText()
{
    return firstResponder() == FirstResponder::Text;
}

bool belongsToText(const QKeyEvent &press)
{
    const bool isFunctionKey = press.key() >= Qt::Key_F1 && press.key() <= Qt::Key_F35;
    const bool isCommand = press.modifiers() & commandModifiers && !isAltGr(press);
    return !isCommand && !isFunctionKey && isTypingText();
}

bool isTakenByMistake(const QKeyEvent &press)
{
    if (!(press.modifiers() & commandModifiers) || isAltGr(press) || !isTypingText())
        return false;
    const bool isTyped = press.modifiers() & (Qt::AltModifier | Qt::MetaModifier) && hasPrintedText(press);
    const QWidget *const focus = QApplication::focusWidget();
    return isTyped || (changesText(press) && focus && focus->property("readOnly").toBool());
}

} // namespace platform
