#include "WindowOpenState.h"

#include <QCoreApplication>
#include <QEvent>

namespace platform
{

WindowOpenState::WindowOpenState(QWidget &window)
    : m_window(&window)
{
    window.installEventFilter(this);
    if (auto *const application = QCoreApplication::instance())
        application->installEventFilter(this);
}

bool WindowOpenState::isOpen() const
{
    return m_wasOpenAtQuit || (m_window && m_window->isVisible());
}

bool WindowOpenState::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance())
        m_wasOpenAtQuit = m_window && m_window->isVisible();
    else if (event->type() == QEvent::Show && watched == m_window)
        m_wasOpenAtQuit = false;
    return false;
}

} // namespace platform
