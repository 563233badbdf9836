#include "LevelMeter.h"

#include "Wording.h"

#include <QWPlatform/foundation/Localization.h>

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace demo
{

namespace
{
constexpr float decibelRange = 60; // decibels

qreal partOf(float level)
{
    return level > 0 ? std::clamp(20 * std::log10(level) / decibelRange + 1, 0.0f, 1.0f) : 0;
}
} // namespace

LevelMeter::LevelMeter(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFixedSize(sizeHint());
    setAccessibleName(platform::localized("Level"));
}

void LevelMeter::setLevel(float level)
{
    if (m_level == level)
        return;
    m_level = level;
    setToolTip(Wording::decibels(level));
    update();
}

void LevelMeter::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor groove = palette().color(QPalette::WindowText);
    groove.setAlphaF(0.12f);
    const QRectF bar = QRectF(rect()).adjusted(0, 1, 0, -1);
    painter.setBrush(groove);
    painter.drawRoundedRect(bar, bar.height() / 2, bar.height() / 2);
    const qreal length = bar.width() * partOf(m_level);
    if (length <= 0)
        return;
    painter.setBrush(palette().color(QPalette::Active, QPalette::Highlight));
    const QRectF lit(bar.left(), bar.top(), std::max(length, bar.height()), bar.height());
    painter.drawRoundedRect(lit, bar.height() / 2, bar.height() / 2);
}

} // namespace demo
