#pragma once

#include <QColor>
#include <QHash>
#include <QIconEngine>
#include <QImage>

#include <vector>

namespace platform
{

/// Paints one shape in the palette's colour for the mode asked for.
class TintedIconEngine : public QIconEngine
{
public:
    using Shapes = std::vector<QImage>; ///< The same shape, smallest first.

    explicit TintedIconEngine(QByteArray svg);
    explicit TintedIconEngine(Shapes shapes);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    bool isNull() override { return false; }

private:
    QImage _drawn(const QSize &size, const QColor &color) const;
    QImage _drawnSvg(const QSize &size, const QColor &color) const;
    QImage _drawnShape(const QSize &size, const QColor &color) const;

    QByteArray m_svg; ///< Empty when there are shapes.
    Shapes m_shapes;
    QHash<QString, QPixmap> m_pixmaps; ///< By size and colour; a few.
};

} // namespace platform
