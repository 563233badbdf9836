#include <QWBase/QWGradient.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTest>

namespace
{
QColor gray(double white)
{
    return QColor::fromRgbF(float(white), float(white), float(white));
}

/// The panels' gradient.
QWGradient panelGradient()
{
    QWGradient gradient(Qt::black, gray(0.3));
    gradient.addStop({gray(0.15), 0.5, 0.5});
    gradient.setMidpointOfStop(0, 0.95);
    return gradient;
}

template <class Draw>
QImage drawn(QSize size, Draw draw)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter);
    return image;
}
} // namespace

class tst_QWGradient : public QObject
{
    Q_OBJECT

private slots:
    void stopsStayInOrder();
    void midpointShiftsTheMixture_data();
    void midpointShiftsTheMixture();
    void hardEdgesStayHard();
    void angleSaysWhereItStarts_data();
    void angleSaysWhereItStarts();
    void pictureHasTheColorsOfTheGradient();
    void onlyThePathIsFilled();
};

void tst_QWGradient::stopsStayInOrder()
{
    QWGradient gradient(Qt::black, Qt::white);
    gradient.addStop({Qt::red, 0.5, 0.5});
    gradient.addStop({Qt::green, 0.25, 2});
    gradient.addStop({Qt::blue, 0.5, -1});
    gradient.addStop({Qt::yellow, 7, 0.5});
    QList<QColor> colors;
    for (const QWGradientStop &stop : gradient.stops())
        colors += stop.color;
    QCOMPARE(colors, QList<QColor>({Qt::black, Qt::green, Qt::red, Qt::blue, Qt::white, Qt::yellow}));
    QCOMPARE(gradient.stops()[1].midpoint, 1.0);
    QCOMPARE(gradient.stops()[3].midpoint, 0.0);
    QCOMPARE(gradient.stops()[5].position, 1.0);
}

void tst_QWGradient::midpointShiftsTheMixture_data()
{
    QTest::addColumn<double>("position");
    QTest::addColumn<double>("white");
    QTest::newRow("start") << 0.0 << 0.0;
    QTest::newRow("before the midpoint") << 0.2375 << 0.0375;
    QTest::newRow("midpoint") << 0.475 << 0.075;
    QTest::newRow("added stop") << 0.5 << 0.15;
    QTest::newRow("between") << 0.75 << 0.225;
    QTest::newRow("end") << 1.0 << 0.3;
    QTest::newRow("outside") << 1.5 << 0.3;
}

void tst_QWGradient::midpointShiftsTheMixture()
{
    QFETCH(double, position);
    QFETCH(double, white);
    const QColor color = panelGradient().colorAt(position);
    QVERIFY2(std::abs(color.redF() - white) < 0.001, qPrintable(color.name()));
    QCOMPARE(color.green(), color.red());
    QCOMPARE(color.alpha(), 255);
}

void tst_QWGradient::hardEdgesStayHard()
{
    QWGradient gradient(Qt::black, Qt::white);
    gradient.addStop({Qt::red, 0.5, 0.5});
    gradient.addStop({Qt::blue, 0.5, 0.5});
    const QImage image = drawn({100, 1}, [&](QPainter &painter) {
        gradient.drawInRectAngle(painter, {0, 0, 100, 1}, 0);
    });
    QVERIFY(image.pixelColor(48, 0).red() > 230);
    QVERIFY(image.pixelColor(51, 0).blue() > 230);
    QVERIFY(image.pixelColor(51, 0).red() < 25);
}

void tst_QWGradient::angleSaysWhereItStarts_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QPointF>("end");
    QTest::newRow("0: left to right") << 0.0 << QPointF(0, 50) << QPointF(200, 50);
    QTest::newRow("90: bottom to top") << 90.0 << QPointF(100, 100) << QPointF(100, 0);
    QTest::newRow("180: right to left") << 180.0 << QPointF(200, 50) << QPointF(0, 50);
    QTest::newRow("270: top to bottom") << 270.0 << QPointF(100, 0) << QPointF(100, 100);
    QTest::newRow("-90: the same") << -90.0 << QPointF(100, 0) << QPointF(100, 100);
    QTest::newRow("45: from the lower left corner") << 45.0 << QPointF(25, 125) << QPointF(175, -25);
}

void tst_QWGradient::angleSaysWhereItStarts()
{
    QFETCH(double, angle);
    QFETCH(QPointF, start);
    QFETCH(QPointF, end);
    const QLinearGradient gradient = panelGradient().linearGradient({0, 0, 200, 100}, angle);
    QVERIFY((gradient.start() - start).manhattanLength() < 1e-9);
    QVERIFY((gradient.finalStop() - end).manhattanLength() < 1e-9);
}

void tst_QWGradient::pictureHasTheColorsOfTheGradient()
{
    const QWGradient gradient = panelGradient();
    const QImage image = drawn({4, 200}, [&](QPainter &painter) {
        gradient.drawInRectAngle(painter, {0, 0, 4, 200}, 90);
    });
    for (int y = 0; y < 200; ++y) {
        const QColor expected = gradient.colorAt(1 - (y + 0.5) / 200);
        QVERIFY2(std::abs(image.pixelColor(1, y).red() - expected.red()) <= 2, qPrintable(QString::number(y)));
    }
}

void tst_QWGradient::onlyThePathIsFilled()
{
    QPainterPath path;
    path.addRoundedRect(10, 10, 40, 40, 10, 10);
    const QImage image =
        drawn({60, 60}, [&](QPainter &painter) { QWGradient(Qt::red, Qt::blue).drawInPathAngle(painter, path, 90); });
    QCOMPARE(image.pixelColor(5, 30).alpha(), 0);
    QCOMPARE(image.pixelColor(10, 10).alpha(), 0); // the round corner
    QVERIFY(image.pixelColor(30, 12).blue() > 230);
    QVERIFY(image.pixelColor(30, 47).red() > 230);
}

QTEST_GUILESS_MAIN(tst_QWGradient)
#include "tst_QWGradient.moc"
