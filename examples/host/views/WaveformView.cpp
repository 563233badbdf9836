#include "WaveformView.h"

#include "Viewport.h"
#include "Wording.h"

#include <QWPlatform/foundation/Localization.h>

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace demo
{

namespace
{
constexpr int headingRoom = 26;
constexpr qreal radius = 6;
constexpr qreal laneMargin = 6;
constexpr double longestWave = 0.5;   ///< Seconds; of less the wave itself can be seen, and its level would hide it.
constexpr double loudnessTime = 0.01; ///< Seconds around each moment that its effective level covers.
const QColor clipped(0xd6, 0x45, 0x45);

QColor withAlpha(QColor colour, float alpha)
{
    colour.setAlphaF(alpha);
    return colour;
}

// A column can be shorter than a period of the sound; its effective level is that of the time around it.
void smoothEffective(std::vector<WaveformSummary::Column> &columns, qint64 reach)
{
    std::vector<double> sums{0};
    for (const auto &column : columns)
        sums.push_back(sums.back() + static_cast<double>(column.effective) * column.effective);
    const auto count = static_cast<qint64>(columns.size());
    for (qint64 i = 0; i < count; ++i) {
        const qint64 first = std::max(i - reach, qint64(0));
        const qint64 last = std::min(i + reach + 1, count);
        const double squares = sums[static_cast<size_t>(last)] - sums[static_cast<size_t>(first)];
        columns[static_cast<size_t>(i)].effective =
            static_cast<float>(std::sqrt(std::max(squares, 0.0) / static_cast<double>(last - first)));
    }
}

// A closed shape from the upper values, left to right, and the lower ones back.
template <class Upper, class Lower>
QPainterPath shapeOf(const std::vector<WaveformSummary::Column> &columns, const QRectF &lane, Upper upper, Lower lower)
{
    const qreal middle = lane.center().y();
    const qreal scale = lane.height() / 2;
    const qreal step = lane.width() / static_cast<qreal>(columns.size());
    const auto y = [&](float value) { return middle - std::clamp(value, -1.0f, 1.0f) * scale; };
    QPolygonF points;
    for (size_t i = 0; i < columns.size(); ++i)
        points << QPointF(lane.left() + (static_cast<qreal>(i) + 0.5) * step,
                          std::min(y(upper(columns[i])), middle - 0.4));
    for (size_t i = columns.size(); i-- > 0;)
        points << QPointF(lane.left() + (static_cast<qreal>(i) + 0.5) * step,
                          std::max(y(lower(columns[i])), middle + 0.4));
    QPainterPath path;
    path.addPolygon(points);
    path.closeSubpath();
    return path;
}
} // namespace

WaveformView::WaveformView(Tone tone, Viewport &viewport, QWidget *parent)
    : QWidget(parent)
    , m_tone(tone)
    , m_viewport(viewport)
{
    connect(&viewport, &Viewport::visibleChanged, this, &WaveformView::_refresh);
    connect(&viewport, &Viewport::selectionChanged, this, qOverload<>(&QWidget::update));
    connect(&viewport, &Viewport::positionChanged, this, qOverload<>(&QWidget::update));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setCursor(Qt::IBeamCursor);
}

void WaveformView::setClip(const QString &heading, ClipPointer clip)
{
    m_heading = heading;
    m_clip = std::move(clip);
    setAccessibleName(platform::formatted(platform::localized("Waveform: %@"), {heading}));
    if (m_clip)
        setAccessibleDescription(Wording::summary(*m_clip) + ", " + platform::localized("peak") + " " +
                                 Wording::decibels(m_clip->peak));
    _refresh();
}

void WaveformView::_refresh()
{
    m_picture = QPixmap();
    update();
}

double WaveformView::_x(double seconds) const
{
    const TimeRange &visible = m_viewport.visible();
    return (seconds - visible.begin) / std::max(visible.length(), Viewport::shortestVisible) * width();
}

double WaveformView::_seconds(double x) const
{
    const TimeRange &visible = m_viewport.visible();
    return visible.begin + std::clamp(x / width(), 0.0, 1.0) * visible.length();
}

QRect WaveformView::_pane() const
{
    return rect().adjusted(0, headingRoom, 0, 0);
}

QRectF WaveformView::_lane(int channel) const
{
    const QRectF pane = QRectF(_pane()).translated(-_pane().topLeft());
    const qreal height = pane.height() / m_clip->store.channelCount();
    return QRectF(0, channel * height, pane.width(), height).adjusted(0, laneMargin, 0, -laneMargin);
}

void WaveformView::_paintHeading(QPainter &painter) const
{
    const QRect line(0, 0, width(), headingRoom - 4);
    const QColor ink = palette().color(QPalette::WindowText);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() - 2);
    const QString levels = platform::formatted(platform::localized("Peak %@   RMS %@"),
                                               {Wording::decibels(m_clip->peak), Wording::decibels(m_clip->effective)});
    painter.setFont(small);
    painter.setPen(withAlpha(ink, 0.65f));
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, levels);
    const int room = line.width() - painter.fontMetrics().horizontalAdvance(levels) - 16;
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    painter.setFont(bold);
    painter.setPen(ink);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(m_heading, Qt::ElideRight, room));
}

void WaveformView::_paintGrid(QPainter &painter, const QRectF &lane) const
{
    const QColor ink = palette().color(QPalette::Text);
    const auto line = [&](qreal level, float alpha) {
        painter.setPen(withAlpha(ink, alpha));
        const qreal y = std::floor(lane.center().y() - level * lane.height() / 2) + 0.5;
        painter.drawLine(QPointF(lane.left(), y), QPointF(lane.right(), y));
    };
    line(0, 0.16f);
    if (lane.height() < 48)
        return;
    line(0.5, 0.06f); // -6 dB
    line(-0.5, 0.06f);
}

void WaveformView::_paintClipping(QPainter &painter, const QRectF &lane,
                                  const std::vector<WaveformSummary::Column> &columns) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(clipped);
    const qreal step = lane.width() / static_cast<qreal>(columns.size());
    for (size_t i = 0; i < columns.size(); ++i) {
        const qreal x = lane.left() + static_cast<qreal>(i) * step;
        if (columns[i].greatest > 1)
            painter.drawRect(QRectF(x - 0.5, lane.top() - 3, step + 1, 3));
        if (columns[i].least < -1)
            painter.drawRect(QRectF(x - 0.5, lane.bottom(), step + 1, 3));
    }
}

void WaveformView::_paintLane(QPainter &painter, int channel) const
{
    const QRectF lane = _lane(channel);
    _paintGrid(painter, lane);
    const SampleStore &store = m_clip->store;
    const TimeRange &visible = m_viewport.visible();
    const auto start = static_cast<qint64>(visible.begin * store.sampleRate());
    const auto frames = std::max(static_cast<qint64>(visible.length() * store.sampleRate()), qint64(1));
    const int count = std::max(1, static_cast<int>(lane.width() * devicePixelRatioF()));
    auto columns = m_clip->summary.columns(store, channel, start, frames, count);
    const qint64 left = std::max(store.frames() - start, qint64(0)); // of the clip; the other one may be longer
    const auto length = static_cast<size_t>(left == 0 ? 0 : std::min<qint64>(count, left * count / frames + 1));
    columns.resize(length);
    if (columns.empty())
        return;
    const QRectF used(lane.left(), lane.top(), lane.width() * static_cast<qreal>(length) / count, lane.height());
    smoothEffective(columns, static_cast<qint64>(loudnessTime * count / visible.length()));
    _paintShapes(painter, used, columns);
    _paintClipping(painter, used, columns);
}

void WaveformView::_paintShapes(QPainter &painter, const QRectF &lane,
                                const std::vector<WaveformSummary::Column> &columns) const
{
    const bool strong = m_tone == Tone::Strong;
    const bool isWave = m_viewport.visible().length() < longestWave;
    const QColor colour = palette().color(QPalette::Active, strong ? QPalette::Highlight : QPalette::Text);
    const QColor full = withAlpha(colour, strong ? 1.0f : 0.5f);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isWave ? full : withAlpha(colour, strong ? 0.42f : 0.24f));
    painter.drawPath(shapeOf(
        columns, lane, [](auto &c) { return c.greatest; }, [](auto &c) { return c.least; }));
    if (isWave)
        return;
    painter.setBrush(full);
    painter.drawPath(shapeOf(
        columns, lane, [](auto &c) { return c.effective; }, [](auto &c) { return -c.effective; }));
}

void WaveformView::_paintPicture(QPainter &painter)
{
    const QRect pane = _pane();
    if (m_picture.isNull() || m_picture.devicePixelRatio() != devicePixelRatioF() ||
        m_picture.deviceIndependentSize().toSize() != pane.size()) {
        m_picture = QPixmap(pane.size() * devicePixelRatioF());
        m_picture.setDevicePixelRatio(devicePixelRatioF());
        m_picture.fill(Qt::transparent);
        QPainter picture(&m_picture);
        picture.setRenderHint(QPainter::Antialiasing);
        for (int channel = 0; channel < m_clip->store.channelCount(); ++channel)
            _paintLane(picture, channel);
    }
    painter.drawPixmap(pane.topLeft(), m_picture);
}

void WaveformView::_paintSelection(QPainter &painter) const
{
    const TimeRange &selection = m_viewport.selection();
    if (selection.isEmpty())
        return;
    const QColor accent = palette().color(QPalette::Active, QPalette::Highlight);
    const QRect pane = _pane();
    const QRectF area(_x(selection.begin), pane.top(), _x(selection.end) - _x(selection.begin), pane.height());
    painter.fillRect(area, withAlpha(accent, 0.16f));
    painter.setPen(withAlpha(accent, 0.7f));
    for (const qreal x : {area.left(), area.right()})
        painter.drawLine(QPointF(std::floor(x) + 0.5, pane.top()), QPointF(std::floor(x) + 0.5, pane.bottom() + 1));
}

void WaveformView::_paintPosition(QPainter &painter) const
{
    const QRect pane = _pane();
    const qreal x = std::floor(_x(m_viewport.position())) + 0.5;
    if (m_viewport.position() <= 0 || x < 0 || x > pane.width())
        return;
    painter.setPen(withAlpha(palette().color(QPalette::Text), 0.8f));
    painter.drawLine(QPointF(x, pane.top()), QPointF(x, pane.bottom() + 1));
}

void WaveformView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(_pane()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.fillPath(outline, palette().color(QPalette::Base));
    if (m_clip) {
        _paintHeading(painter);
        painter.save();
        painter.setClipPath(outline);
        _paintPicture(painter);
        _paintSelection(painter);
        _paintPosition(painter);
        painter.restore();
    }
    const bool focused = hasFocus() && window()->isActiveWindow();
    painter.setPen(focused ? QPen(palette().color(QPalette::Highlight), 1.5)
                           : QPen(withAlpha(palette().color(QPalette::WindowText), 0.14f)));
    painter.drawPath(outline);
}

void WaveformView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_clip)
        return;
    m_pressed = _seconds(event->position().x());
    m_viewport.setSelection({});
    m_viewport.setPosition(m_pressed);
}

void WaveformView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton) || !m_clip)
        return;
    const double here = _seconds(event->position().x());
    m_viewport.setSelection({std::min(m_pressed, here), std::max(m_pressed, here)});
    m_viewport.setPosition(std::min(m_pressed, here));
}

void WaveformView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        _refresh();
    QWidget::changeEvent(event);
}

} // namespace demo
