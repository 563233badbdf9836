#pragma once

#include <QPointer>

class QMenu;
class QWheelEvent;

namespace platform
{

/// Scrolls a menu by as many items as the wheel turned lines; the menu itself goes one item at each event, however far
/// the wheel turned, and down where it did not. Main thread.
class MenuWheel
{
public:
    void turn(QMenu &menu, const QWheelEvent &event);

private:
    QPointer<QMenu> m_menu;
    int m_rest = 0; ///< What was turned and not yet scrolled: lines, times the angle of a notch.
};

} // namespace platform
