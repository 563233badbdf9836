#include "GridMonitor.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWUtilities/controllers/QWMonomeRemote.h>

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace demo
{

using platform::localized;

namespace
{
constexpr int gridRefresh = 100; // milliseconds
constexpr double gap = 0.16;     ///< Of the pitch.
constexpr int statusRoom = 16;

QColor withAlpha(QColor colour, float alpha)
{
    colour.setAlphaF(alpha);
    return colour;
}

/// Columns 8 to 15 come as -8 to -1.
QPoint buttonOf(QWGridPosition position)
{
    const auto column = static_cast<int>(position.x);
    return {column < 0 ? column + 16 : column, static_cast<int>(position.y)};
}

QWGridPosition positionOf(QPoint button)
{
    return {static_cast<float>(button.x()), static_cast<float>(button.y())};
}
} // namespace

GridMonitor::GridMonitor(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_refresh.setInterval(gridRefresh);
    connect(&m_refresh, &QTimer::timeout, this, [this] {
        setAccessibleDescription(_status());
        update();
    });
}

GridMonitor::~GridMonitor()
{
    auto *grid = platform::System::current().sharedIfMade<QWMonomeRemote>(); // it may be gone at the end
    if (m_grid && grid)
        grid->removeObserver(*this);
}

/// Brings what it listens to up to date with its state.
void GridMonitor::_listen()
{
    const bool listens = isVisible() && isEnabled();
    if (listens == (m_grid != nullptr))
        return;
    m_held.clear();
    if (listens) {
        m_grid = &QWMonomeRemote::remote();
        m_grid->addObserver(*this);
        m_refresh.start();
    } else {
        m_refresh.stop();
        std::exchange(m_grid, nullptr)->removeObserver(*this);
    }
    setAccessibleDescription(_status());
    update();
}

void GridMonitor::_hold(QPoint button, bool held)
{
    if (held)
        m_held.insert(button);
    else
        m_held.remove(button);
    update();
}

/// Nobody tells of the release of what is held then. It comes after what the grid's own thread has told.
void GridMonitor::monomeRemoteRemoved(QWMonomeRemote &)
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_held.clear();
            update();
        },
        Qt::QueuedConnection);
}

void GridMonitor::monomeRemoteButtonDownAtPosition(QWMonomeRemote &, QWGridPosition position)
{
    QMetaObject::invokeMethod(
        this, [this, button = buttonOf(position)] { _hold(button, true); }, Qt::QueuedConnection);
}

void GridMonitor::monomeRemoteButtonUpAtPosition(QWMonomeRemote &, QWGridPosition position)
{
    QMetaObject::invokeMethod(
        this, [this, button = buttonOf(position)] { _hold(button, false); }, Qt::QueuedConnection);
}

QSize GridMonitor::_buttons() const
{
    if (!m_grid || !m_grid->isConnected() || m_grid->numberOfButtons() == 0)
        return {8, 8};
    return {static_cast<int>(m_grid->numberOfColumns()), static_cast<int>(m_grid->numberOfRows())};
}

double GridMonitor::_pitch() const
{
    return static_cast<double>(height()) / _buttons().height();
}

QRectF GridMonitor::_cell(QPoint button) const
{
    const double room = _pitch() * gap / 2;
    return QRectF(QPointF(button) * _pitch(), QSizeF(_pitch(), _pitch())).adjusted(room, room, -room, -room);
}

std::optional<QPoint> GridMonitor::_buttonAt(const QPointF &place) const
{
    const QPoint button(static_cast<int>(place.x() / _pitch()), static_cast<int>(place.y() / _pitch()));
    return QRect({}, _buttons()).contains(button) ? std::optional(button) : std::nullopt;
}

QString GridMonitor::_status() const
{
    if (!isEnabled())
        return localized("The grid is not used.");
    if (!m_grid || !m_grid->isConnected())
        return localized("No grid is connected. It is found when you plug it in.");
    return platform::formatted(localized("Grid %@ with %@ buttons"),
                               {QString::number(m_grid->serialNumber()), QString::number(m_grid->numberOfButtons())});
}

void GridMonitor::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = palette().color(QPalette::WindowText);
    const QColor light = palette().color(QPalette::Active, QPalette::Highlight);
    const QSize buttons = _buttons();
    for (int row = 0; row < buttons.height(); ++row) {
        for (int column = 0; column < buttons.width(); ++column) {
            const QPoint button(column, row);
            const bool isLit = m_grid && m_grid->LEDStateAtPosition(positionOf(button));
            const QRectF cell = _cell(button);
            painter.setPen(m_held.contains(button) ? QPen(ink, 1.75) : QPen(Qt::NoPen));
            painter.setBrush(isLit ? light : withAlpha(ink, m_grid && m_grid->isConnected() ? 0.16f : 0.08f));
            painter.drawRoundedRect(cell, cell.width() * 0.2, cell.width() * 0.2);
        }
    }
    const int left = static_cast<int>(buttons.width() * _pitch()) + statusRoom;
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(rect().adjusted(left, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, _status());
}

void GridMonitor::mousePressEvent(QMouseEvent *event)
{
    const auto button = _buttonAt(event->position());
    if (m_grid && button)
        m_grid->toggleLEDAtPosition(positionOf(*button));
    update();
}

void GridMonitor::showEvent(QShowEvent *)
{
    _listen();
}

void GridMonitor::hideEvent(QHideEvent *)
{
    _listen();
}

void GridMonitor::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange)
        _listen();
    QWidget::changeEvent(event);
}

} // namespace demo
