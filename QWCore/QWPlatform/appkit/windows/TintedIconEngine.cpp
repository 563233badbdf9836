#include "TintedIconEngine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

namespace platform
{

namespace
{
constexpr qsizetype mostPixmaps = 16; // a theme change or two at a few sizes

QColor colorFor(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    case QIcon::Normal:
    case QIcon::Active:
        break;
    }
    return palette.color(QPalette::Active, QPalette::WindowText);
}

QImage blank(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// @p inner scaled to fit @p size, in its middle.
QRectF fitted(const QSizeF &inner, const QSize &size)
{
    const QSizeF scaled = inner.scaled(size, Qt::KeepAspectRatio);
    return {QPointF((size.width() - scaled.width()) / 2, (size.height() - scaled.height()) / 2), scaled};
}
} // namespace

TintedIconEngine::TintedIconEngine(QByteArray svg)
    : m_svg(std::move(svg))
{
}

TintedIconEngine::TintedIconEngine(Shapes shapes)
    : m_shapes(std::move(shapes))
{
}

void TintedIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state)
{
    const qreal scale = painter->device() ? painter->device()->devicePixelRatio() : 1.0;
    painter->drawPixmap(rect, pixmap(rect.size() * scale, mode, state));
}

QPixmap TintedIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State)
{
    const QColor color = colorFor(mode);
    const QString key = QString("%1x%2 %3").arg(size.width()).arg(size.height()).arg(color.name(QColor::HexArgb));
    if (!m_pixmaps.contains(key)) {
        if (m_pixmaps.size() >= mostPixmaps)
            m_pixmaps.clear();
        m_pixmaps.insert(key, QPixmap::fromImage(_drawn(size, color)));
    }
    return m_pixmaps.value(key);
}

QSize TintedIconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    return size;
}

QIconEngine *TintedIconEngine::clone() const
{
    return new TintedIconEngine(*this);
}

QString TintedIconEngine::key() const
{
    return QStringLiteral("TintedIconEngine");
}

QImage TintedIconEngine::_drawn(const QSize &size, const QColor &color) const
{
    return m_shapes.empty() ? _drawnSvg(size, color) : _drawnShape(size, color);
}

QImage TintedIconEngine::_drawnSvg(const QSize &size, const QColor &color) const
{
    QByteArray svg = m_svg;
    svg.replace("currentColor", color.name().toUtf8());
    QSvgRenderer renderer(svg);
    QImage image = blank(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(color.alphaF());
    renderer.render(&painter, fitted(renderer.defaultSize(), size));
    return image;
}

QImage TintedIconEngine::_drawnShape(const QSize &size, const QColor &color) const
{
    const auto fine =
        std::find_if(m_shapes.begin(), m_shapes.end(), [&](const QImage &s) { return s.width() >= size.width(); });
    const QImage &shape = fine == m_shapes.end() ? m_shapes.back() : *fine;
    QImage image = blank(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(fitted(shape.size(), size), shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace platform
