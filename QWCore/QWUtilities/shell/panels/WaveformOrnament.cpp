#include "WaveformOrnament.h"

#include <QLinearGradient>
#include <QPainter>

#include <cmath>

namespace qw
{

namespace
{
constexpr double barWidth = 2;
constexpr double barStep = 5;

/// Height of the bar at @p place (0 at the left to 1 at the right), 0 to 1: a few beats of a loop, swelling.
double level(double place)
{
    const double swell = std::pow(place, 1.6) * std::sqrt(1 - place);
    const double beat = std::abs(std::sin(place * 23)) * 0.6 + std::abs(std::sin(place * 61 + 1)) * 0.4;
    return std::min(1.0, 2.4 * swell * (0.25 + 0.75 * beat));
}

QLinearGradient fadingDown(const QRectF &area)
{
    QLinearGradient shade(area.topLeft(), area.bottomLeft());
    shade.setColorAt(0, QColor(255, 255, 255, 70));
    shade.setColorAt(0.5, QColor(255, 255, 255, 46));
    shade.setColorAt(0.51, QColor(255, 255, 255, 30));
    shade.setColorAt(1, QColor(255, 255, 255, 8));
    return shade;
}
} // namespace

WaveformOrnament::WaveformOrnament(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

WaveformOrnament::~WaveformOrnament() = default;

void WaveformOrnament::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fadingDown(rect()));
    for (double x = 0; x + barWidth <= width(); x += barStep) {
        const double bar = std::max(barWidth, level(x / width()) * height());
        painter.drawRoundedRect(QRectF(x, (height() - bar) / 2, barWidth, bar), 1, 1);
    }
}

} // namespace qw
