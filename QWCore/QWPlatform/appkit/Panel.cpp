#include "Panel.h"

#include <QCloseEvent>
#include <QDialog>
#include <QFileDialog>
#include <QKeyEvent>

namespace platform
{

Panel::Panel(QWidget *parent)
    : QWidget(parent, Qt::Window)
{
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
