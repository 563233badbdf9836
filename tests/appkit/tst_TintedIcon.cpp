#include <QWPlatform/appkit/Theme.h>
#include <QWPlatform/appkit/TintedIcon.h>

#include <QApplication>
#include <QPalette>
#include <QTemporaryDir>
#include <QTest>

namespace
{
/// A filled square from 6 to 18 on the 24 grid.
constexpr auto square = "<svg xmlns='http://www.w3.org/2000/svg' width='24' height='24' viewBox='0 0 24 24'>"
                        "<rect x='6' y='6' width='12' height='12' fill='currentColor'/></svg>";

QColor middleOf(const QPixmap &pixmap)
{
    const QImage image = pixmap.toImage();
    return image.pixelColor(image.rect().center());
}
} // namespace

class tst_TintedIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { platform::applyTheme(*qApp, platform::ThemeChoice::Light); }
    void colorFollowsModeAndPalette_data();
    void colorFollowsModeAndPalette();
    void linesAreSharpOnFineScreens();
    void shapesOfPngsAreTinted();
    void unreadableFilesGiveNoIcon_data();
    void unreadableFilesGiveNoIcon();
};

void tst_TintedIcon::colorFollowsModeAndPalette_data()
{
    QTest::addColumn<QIcon::Mode>("mode");
    QTest::addColumn<QPalette::ColorGroup>("group");
    QTest::addColumn<QPalette::ColorRole>("role");
    QTest::newRow("normal") << QIcon::Normal << QPalette::Active << QPalette::WindowText;
    QTest::newRow("disabled") << QIcon::Disabled << QPalette::Disabled << QPalette::WindowText;
    QTest::newRow("selected") << QIcon::Selected << QPalette::Active << QPalette::HighlightedText;
}

void tst_TintedIcon::colorFollowsModeAndPalette()
{
    QFETCH(QIcon::Mode, mode);
    QFETCH(QPalette::ColorGroup, group);
    QFETCH(QPalette::ColorRole, role);
    const QIcon icon = platform::tintedIconFromSvg(square);
    for (const auto theme : {platform::ThemeChoice::Light, platform::ThemeChoice::Dark}) {
        platform::applyTheme(*qApp, theme);
        QCOMPARE(middleOf(icon.pixmap(QSize(24, 24), 1.0, mode)), platform::themePalette(theme).color(group, role));
    }
}

void tst_TintedIcon::linesAreSharpOnFineScreens()
{
    const QPixmap fine = platform::tintedIconFromSvg(square).pixmap(QSize(24, 24), 2.0);
    QCOMPARE(fine.size(), QSize(48, 48));
    QCOMPARE(fine.devicePixelRatio(), 2.0);
    const QImage image = fine.toImage();
    QCOMPARE(image.pixelColor(11, 24).alpha(), 0); // the edge falls between two pixels
    QCOMPARE(image.pixelColor(12, 24).alpha(), 255);
}

void tst_TintedIcon::shapesOfPngsAreTinted()
{
    QTemporaryDir folder;
    QImage coarse(24, 24, QImage::Format_ARGB32);
    coarse.fill(Qt::red);
    QImage fine(48, 48, QImage::Format_ARGB32);
    fine.fill(Qt::transparent);
    QVERIFY(coarse.save(folder.filePath("home.png")) && fine.save(folder.filePath("home@2x.png")));
    const QIcon icon = platform::tintedIcon(folder.filePath("home.png"));
    QCOMPARE(middleOf(icon.pixmap(QSize(24, 24), 1.0)), QApplication::palette().color(QPalette::WindowText));
    QCOMPARE(middleOf(icon.pixmap(QSize(24, 24), 2.0)).alpha(), 0); // the finer picture was taken
}

void tst_TintedIcon::unreadableFilesGiveNoIcon_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("missing") << "missing.svg" << QByteArray();
    QTest::newRow("garbage") << "a.svg" << QByteArray("\x01\x02<");
    QTest::newRow("garbage PNG") << "a.png" << QByteArray("PNG");
}

void tst_TintedIcon::unreadableFilesGiveNoIcon()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, data);
    QTemporaryDir folder;
    QFile file(folder.filePath(name));
    if (!data.isEmpty())
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(data) == data.size());
    file.close();
    QVERIFY(platform::tintedIcon(file.fileName()).isNull());
}

QTEST_MAIN(tst_TintedIcon)
#include "tst_TintedIcon.moc"
