#include "Panel.h"

#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QDialog>
#include <QFileDialog>
#include <QKeyEvent>

namespace platform
{

namespace
{
/// To a screen reader a panel is a window, not a part of one.
QAccessibleInterface *accessiblePanel(const QString &className, QObject *object)
{
    const bool isPanel = className == QLatin1String(Panel::staticMetaObject.className());
    return isPanel ? new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::Window) : nullptr;
}
} // namespace

Panel::Panel(QWidget *parent)
    : QWidget(parent, Qt::Window)
{
    QAccessible::installFactory(&accessiblePanel); // counts once, and until the application object goes
}

Panel::~Panel() = default;

bool Panel::isFloating() const
{
    return windowType() == Qt::Tool;
}

void Panel::setFloating(bool floating)
{
    setWindowFlags((windowFlags() & ~Qt::WindowType_Mask) | (floating ? Qt::Tool : Qt::Window));
}

void Panel::closeEvent(QCloseEvent *event)
{
    Q_EMIT willClose();
    QWidget::closeEvent(event);
}

void Panel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        close();
    else
        QWidget::keyPressEvent(event);
}

bool isPanel(const QWidget *window)
{
    return qobject_cast<const Panel *>(window) || qobject_cast<const QDialog *>(window);
}

bool isFloatingPanel(const QWidget *window)
{
    return isPanel(window) && window->windowType() == Qt::Tool;
}

bool isFilePanel(const QWidget *window)
{
    return qobject_cast<const QFileDialog *>(window);
}

} // namespace platform
