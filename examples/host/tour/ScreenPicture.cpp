#include "ScreenPicture.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QWidget>

namespace demo::ScreenPicture
{

namespace
{
constexpr int margin = 48;
constexpr int shadowReach = 24;
constexpr int shadowDrop = 8;

QRect boundsOf(const QList<QWidget *> &windows)
{
    QRect bounds;
    for (const QWidget *window : windows) {
        if (window->isVisible())
            bounds |= window->geometry();
    }
    return bounds.marginsAdded(QMargins(margin, margin, margin, margin));
}

// Rounded rectangles of little ink, one inside the other and darker inwards, add up to a soft edge.
void paintShadow(QPainter &painter, const QRect &window)
{
    painter.setPen(Qt::NoPen);
    for (int reach = shadowReach; reach > 0; reach -= 2) {
        painter.setBrush(QColor(0, 0, 0, 1 + (shadowReach - reach) / 6));
        const QMargins edge(reach, reach, reach, reach);
        painter.drawRoundedRect(window.translated(0, shadowDrop).marginsAdded(edge), reach + 4, reach + 4);
    }
}

QColor backdrop()
{
    const bool dark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    return dark ? QColor(0x12, 0x13, 0x15) : QColor(0xdc, 0xdf, 0xe4);
}
} // namespace

QImage of(QWidget &window)
{
    return window.grab().toImage();
}

QImage of(const QList<QWidget *> &windows)
{
    const QRect bounds = boundsOf(windows);
    const qreal ratio = windows.first()->devicePixelRatioF();
    QImage image(bounds.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(backdrop());
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-bounds.topLeft());
    for (QWidget *window : windows) {
        if (!window->isVisible())
            continue;
        paintShadow(painter, window->geometry());
        painter.drawPixmap(window->geometry().topLeft(), window->grab());
    }
    return image;
}

bool hasContent(const QImage &picture)
{
    const QImage plain = picture.convertToFormat(QImage::Format_RGB32);
    if (plain.isNull())
        return false;
    const QRgb first = plain.pixel(0, 0);
    for (int y = 0; y < plain.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(plain.constScanLine(y));
        for (int x = 0; x < plain.width(); ++x) {
            if (line[x] != first)
                return true;
        }
    }
    return false;
}

} // namespace demo::ScreenPicture
