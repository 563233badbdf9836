#include "TintedIcon.h"

#include "QWPlatform/appkit/windows/TintedIconEngine.h"

#include <QFile>
#include <QFileInfo>
#include <QSvgRenderer>

namespace platform
{

namespace
{
QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QIcon iconFromShapes(const QString &path)
{
    const QFileInfo info(path);
    TintedIconEngine::Shapes shapes;
    for (const QString &name : {path, QString(info.path() + '/' + info.completeBaseName() + "@2x." + info.suffix())}) {
        if (const QImage shape(name); !shape.isNull())
            shapes.push_back(shape.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }
    return shapes.empty() ? QIcon() : QIcon(new TintedIconEngine(std::move(shapes)));
}
} // namespace

QIcon tintedIcon(const QString &path)
{
    return path.endsWith(".svg", Qt::CaseInsensitive) ? tintedIconFromSvg(contentsOf(path)) : iconFromShapes(path);
}

QIcon tintedIconFromSvg(const QByteArray &svg)
{
    return QSvgRenderer(svg).isValid() ? QIcon(new TintedIconEngine(svg)) : QIcon();
}

} // namespace platform
