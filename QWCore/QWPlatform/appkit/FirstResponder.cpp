#include "FirstResponder.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QColumnView>
#include <QInputMethodQueryEvent>
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
/// The engine's own widget has the focus, inside its view. By name: the engine is a module loaded on demand.
bool isInWebView(const QWidget *widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (widget->inherits("QWebEngineView"))
            return true;
    }
    return false;
}

bool isTextClass(const QWidget *widget)
{
    return qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QTextEdit *>(widget) ||
           qobject_cast<const QPlainTextEdit *>(widget) || qobject_cast<const QAbstractSpinBox *>(widget) ||
           qobject_cast<const QKeySequenceEdit *>(widget) || isInWebView(widget);
}

FirstResponder kindOfClass(const QWidget *widget)
{
    if (isTextClass(widget))
        return FirstResponder::Text;
    if (qobject_cast<const QTreeView *>(widget) || qobject_cast<const QColumnView *>(widget))
        return FirstResponder::Outline;
    return qobject_cast<const QAbstractItemView *>(widget) ? FirstResponder::Table : FirstResponder::Other;
}

bool takesInput(const QWidget *widget)
{
    const auto *const label = qobject_cast<const QLabel *>(widget);
    if (label && label->textInteractionFlags() & (Qt::TextEditable | Qt::TextSelectableByKeyboard))
        return true;
    return widget->inputMethodQuery(Qt::ImEnabled).toBool();
}

/// Of a window that is no widget, such as a scene of its own.
bool focusObjectTakesInput()
{
    QObject *const object = QGuiApplication::focusObject();
    if (!object || object->isWidgetType())
        return false;
    QInputMethodQueryEvent query(Qt::ImEnabled);
    QCoreApplication::sendEvent(object, &query);
    return query.value(Qt::ImEnabled).toBool();
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

} // namespace platform
