#include "PanelBackground.h"

#include "BorderlessWindow.h"

#include <QWBase/QWGradient.h>

#include <QPainter>

namespace qw
{

namespace
{
constexpr double upwards = 90;

QColor white(double brightness)
{
    const auto value = static_cast<float>(brightness);
    return QColor::fromRgbF(value, value, value);
}
} // namespace

std::unique_ptr<QWGradient> makePanelGradient()
{
    auto gradient = std::make_unique<QWGradient>(Qt::black, white(0.3));
    gradient->addStop({.color = white(0.15), .position = 0.5});
    gradient->setMidpointOfStop(0, 0.95);
    return gradient;
}

void fillPanel(QPainter &painter, const QWGradient &gradient, const QSizeF &size)
{
    painter.setRenderHint(QPainter::Antialiasing);
    gradient.drawInPathAngle(painter, roundedPanel(size), upwards);
}

} // namespace qw
