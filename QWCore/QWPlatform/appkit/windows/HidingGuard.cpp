#include "HidingGuard.h"

#include <QEvent>

namespace platform
{

HidingGuard::HidingGuard(QWidget &window)
    : QObject(&window)
    , m_window(window)
{
    window.installEventFilter(this);
    _bringBack();
}

bool HidingGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowStateChange) // back from the loop: the window is still being minimized
        QMetaObject::invokeMethod(this, &HidingGuard::_bringBack, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

void HidingGuard::_bringBack()
{
    if (m_window.isMinimized())
        m_window.setWindowState(m_window.windowState() & ~Qt::WindowMinimized);
}

} // namespace platform
