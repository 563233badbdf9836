#include "GridView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <optional>

namespace
{
constexpr int pitch = 44;    // pixels from button to button at the size the view would like
constexpr int smallest = 20; // and at the least
constexpr qreal gap = 0.16;  // of the pitch

QColor blend(const QColor &from, const QColor &to, qreal part)
{
    const auto mix = [part](qreal a, qreal b) { return a + (b - a) * part; };
    return QColor::fromRgbF(static_cast<float>(mix(from.redF(), to.redF())),
                            static_cast<float>(mix(from.greenF(), to.greenF())),
                            static_cast<float>(mix(from.blueF(), to.blueF())));
}
} // namespace

GridView::GridView(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Grid"));
}

void GridView::setDimensions(int columns, int rows)
{
    m_columns = columns;
    m_rows = rows;
    m_pressed.clear();
    m_mouse.reset();
    m_key.reset();
    m_focus = {0, 0};
    updateGeometry();
    update();
}

void GridView::setLevel(int level)
{
    m_level = level;
    update();
}

void GridView::setPressed(int column, int row, bool isPressed)
{
    if (isPressed)
        m_pressed.insert({column, row});
    else
        m_pressed.remove({column, row});
    update();
}

QSize GridView::sizeHint() const
{
    return QSize(m_columns, m_rows) * pitch;
}

QSize GridView::minimumSizeHint() const
{
    return QSize(m_columns, m_rows) * smallest;
}

QRectF GridView::buttonRect(int column, int row) const
{
    const qreal side = _pitch();
    const QRectF cell(_origin() + QPointF(column, row) * side, QSizeF(side, side));
    const qreal margin = side * gap / 2;
    return cell.adjusted(margin, margin, -margin, -margin);
}

void GridView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int row = 0; row < m_rows; ++row)
        for (int column = 0; column < m_columns; ++column)
            _paintButton(painter, {column, row});
}

void GridView::mousePressEvent(QMouseEvent *event)
{
    const auto button = _buttonAt(event->position());
    if (!button)
        return;
    m_focus = *button;
    if (m_pressed.contains(*button)) // held by the right button before
        return _release(*button);
    _press(*button);
    if (event->button() == Qt::LeftButton)
        m_mouse = button;
}

void GridView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_mouse)
        _release(*std::exchange(m_mouse, {}));
}

void GridView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        return _moveFocus(-1, 0);
    case Qt::Key_Right:
        return _moveFocus(1, 0);
    case Qt::Key_Up:
        return _moveFocus(0, -1);
    case Qt::Key_Down:
        return _moveFocus(0, 1);
    case Qt::Key_Space:
        if (!event->isAutoRepeat() && !m_key)
            _press(*(m_key = m_focus));
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void GridView::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space)
        return QWidget::keyReleaseEvent(event);
    if (!event->isAutoRepeat() && m_key)
        _release(*std::exchange(m_key, {}));
}

void GridView::focusOutEvent(QFocusEvent *event)
{
    if (m_key)
        _release(*std::exchange(m_key, {})); // its release will go elsewhere
    QWidget::focusOutEvent(event);
    update();
}

qreal GridView::_pitch() const
{
    return std::min(width() / qreal(m_columns), height() / qreal(m_rows));
}

QPointF GridView::_origin() const
{
    return {(width() - _pitch() * m_columns) / 2, (height() - _pitch() * m_rows) / 2};
}

std::optional<GridView::Button> GridView::_buttonAt(QPointF point) const
{
    const QPointF place = (point - _origin()) / _pitch();
    const Button button{static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y()))};
    const bool isInside = button.first >= 0 && button.first < m_columns && button.second >= 0 && button.second < m_rows;
    return isInside && buttonRect(button.first, button.second).contains(point) ? std::optional(button) : std::nullopt;
}

void GridView::_paintButton(QPainter &painter, Button button) const
{
    const QRectF rect = buttonRect(button.first, button.second);
    const qreal radius = rect.width() / 6;
    const bool isLit = m_isLit && m_isLit(button.first, button.second);
    painter.setPen(QPen(blend(_dark(), palette().color(QPalette::WindowText), 0.16), 1));
    painter.setBrush(isLit ? _lit() : _dark());
    painter.drawRoundedRect(rect, radius, radius);
    if (m_pressed.contains(button)) {
        const qreal inset = rect.width() / 7;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::WindowText), 2));
        painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius / 2, radius / 2);
    }
    if (hasFocus() && button == m_focus) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRoundedRect(rect.adjusted(-2, -2, 2, 2), radius + 2, radius + 2);
    }
}

QColor GridView::_dark() const
{
    return blend(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.07);
}

/// Even the lowest level can be told from an LED that is off.
QColor GridView::_lit() const
{
    return blend(_dark(), palette().color(QPalette::Highlight), (m_level + 3) / 18.0);
}

void GridView::_press(Button button)
{
    setPressed(button.first, button.second, true);
    Q_EMIT pressed(button.first, button.second);
}

void GridView::_release(Button button)
{
    setPressed(button.first, button.second, false);
    Q_EMIT released(button.first, button.second);
}

void GridView::_moveFocus(int columns, int rows)
{
    m_focus = {std::clamp(m_focus.first + columns, 0, m_columns - 1), std::clamp(m_focus.second + rows, 0, m_rows - 1)};
    update();
}
