#include "MenuWheel.h"

#include <QApplication>
#include <QMenu>
#include <QWheelEvent>

#include <cstdlib>

namespace platform
{

namespace
{
constexpr int unitsPerNotch = QWheelEvent::DefaultDeltasPerStep;
} // namespace

void MenuWheel::turn(QMenu &menu, const QWheelEvent &event)
{
    if (m_menu != &menu)
        m_rest = 0;
    m_menu = &menu;
    m_rest += event.angleDelta().y() * QApplication::wheelScrollLines();
    const int step = m_rest < 0 ? -unitsPerNotch : unitsPerNotch;
    for (; std::abs(m_rest) >= unitsPerNotch; m_rest -= step) {
        QWheelEvent line(event.position(), event.globalPosition(), {}, QPoint(0, step), event.buttons(),
                         event.modifiers(), event.phase(), event.inverted());
        static_cast<QObject &>(menu).event(&line);
    }
}

} // namespace platform
