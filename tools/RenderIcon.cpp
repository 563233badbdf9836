// Renders an SVG picture as square PNG files; run by the build.
//   qw-render-icon PICTURE.svg OUTPUT.png SIZE [OUTPUT.png SIZE …]
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace
{
bool render(QSvgRenderer &picture, const QString &path, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    picture.render(&painter);
    painter.end();
    return image.save(path);
}
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    QSvgRenderer picture(arguments.value(1));
    bool ok = picture.isValid();
    for (int i = 2; ok && i + 1 < arguments.size(); i += 2)
        ok = render(picture, arguments[i], arguments[i + 1].toInt());
    if (!ok)
        std::fprintf(stderr, "%s cannot be rendered\n", qPrintable(arguments.value(1)));
    return ok ? 0 : 1;
}
