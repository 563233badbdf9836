#include "Icons.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/TintedIcon.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace demo
{

namespace
{
QString pathOf(const QString &name)
{
    return platform::System::current().mainBundle().pathForResource(name, "svg");
}
} // namespace

QPixmap linePicture(const QString &name, const QColor &colour, int size, qreal devicePixelRatio)
{
    QFile file(pathOf(name));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    QSvgRenderer picture(file.readAll().replace("currentColor", colour.name(QColor::HexRgb).toLatin1()));
    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(colour.alphaF());
    picture.render(&painter, QRectF(0, 0, size, size));
    return pixmap;
}

QIcon lineIcon(const QString &name)
{
    const QString path = pathOf(name);
    return path.isEmpty() ? QIcon() : platform::tintedIcon(path);
}

} // namespace demo
