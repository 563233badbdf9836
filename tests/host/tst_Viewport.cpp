#include <views/Viewport.h>

#include <QSignalSpy>
#include <QTest>

using demo::TimeRange;
using demo::Viewport;

class tst_Viewport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newSoundIsShownWhole();
    void changedSoundKeepsTheStretch();
    void changedSoundDoesNotScrollToThePosition();
    void anotherSoundIsShownWhole();
    void zoomKeepsThePositionInPlace();
    void zoomWithoutThePositionKeepsTheMiddle();
    void zoomEndsAtTheShortestAndAtTheWhole();
    void scrollStopsAtTheEnds();
    void positionComesIntoView();
    void selectionStaysWithinTheSound_data();
    void selectionStaysWithinTheSound();
    void emptySoundHurtsNothing();
};

static bool near(double a, double b)
{
    return std::abs(a - b) < 1e-9;
}

void tst_Viewport::newSoundIsShownWhole()
{
    Viewport viewport;
    const QSignalSpy changes(&viewport, &Viewport::visibleChanged);
    viewport.setDuration(4);
    QCOMPARE(viewport.visible(), (TimeRange{0, 4}));
    viewport.setDuration(8);
    QVERIFY(viewport.showsAll());
    QCOMPARE(changes.size(), 2);
}

void tst_Viewport::changedSoundKeepsTheStretch()
{
    Viewport viewport;
    viewport.setDuration(8);
    viewport.setVisible({4, 6});
    viewport.setSelection({5, 7});
    viewport.setPosition(6);
    viewport.setDuration(10);
    QCOMPARE(viewport.visible(), (TimeRange{4, 6}));
    viewport.setDuration(5);
    QCOMPARE(viewport.visible(), (TimeRange{3, 5}));
    QVERIFY(viewport.selection().isEmpty());
    QCOMPARE(viewport.position(), 5.0);
}

void tst_Viewport::changedSoundDoesNotScrollToThePosition()
{
    Viewport viewport;
    viewport.setDuration(8);
    viewport.setPosition(1);
    viewport.setVisible({4, 6});
    for (const double duration : {8.0, 10.0, 7.0}) {
        viewport.setDuration(duration);
        QCOMPARE(viewport.visible(), (TimeRange{4, 6}));
        QCOMPARE(viewport.position(), 1.0);
    }
    viewport.setDuration(6.5);
    viewport.setVisible({0, 2});
    viewport.setPosition(6.5);
    viewport.setVisible({0, 2});
    const QSignalSpy moves(&viewport, &Viewport::positionChanged);
    viewport.setDuration(6); // the position is cut off with the end
    QCOMPARE(viewport.position(), 6.0);
    QCOMPARE(viewport.visible(), (TimeRange{0, 2}));
    QCOMPARE(moves.size(), 1);
}

void tst_Viewport::anotherSoundIsShownWhole()
{
    Viewport viewport;
    viewport.setDuration(8);
    viewport.setVisible({4, 6});
    viewport.setSelection({5, 7});
    viewport.setPosition(6);
    viewport.setDuration(0);
    viewport.setDuration(7);
    QVERIFY(viewport.showsAll());
    QVERIFY(viewport.selection().isEmpty());
    QCOMPARE(viewport.position(), 0.0);
}

void tst_Viewport::zoomKeepsThePositionInPlace()
{
    Viewport viewport;
    viewport.setDuration(8);
    viewport.setPosition(2); // a quarter from the left
    viewport.zoom(2);
    QVERIFY(near(viewport.visible().begin, 1) && near(viewport.visible().end, 5));
    viewport.zoom(0.5);
    QVERIFY(viewport.showsAll());
}

void tst_Viewport::zoomWithoutThePositionKeepsTheMiddle()
{
    Viewport viewport;
    viewport.setDuration(8);
    viewport.setVisible({4, 8});
    viewport.zoom(2);
    QVERIFY(near(viewport.visible().begin, 5) && near(viewport.visible().end, 7));
}

void tst_Viewport::zoomEndsAtTheShortestAndAtTheWhole()
{
    Viewport viewport;
    viewport.setDuration(8);
    for (int i = 0; i < 50; ++i)
        viewport.zoom(2);
    QVERIFY(near(viewport.visible().length(), Viewport::shortestVisible));
    for (int i = 0; i < 50; ++i)
        viewport.zoom(0.5);
    QVERIFY(viewport.showsAll());
}

void tst_Viewport::scrollStopsAtTheEnds()
{
    Viewport viewport;
    viewport.setDuration(8);
    viewport.setVisible({2, 4});
    viewport.scroll(0.5);
    QCOMPARE(viewport.visible(), (TimeRange{3, 5}));
    viewport.scroll(10);
    QCOMPARE(viewport.visible(), (TimeRange{6, 8}));
    viewport.scroll(-10);
    QCOMPARE(viewport.visible(), (TimeRange{0, 2}));
}

void tst_Viewport::positionComesIntoView()
{
    Viewport viewport;
    viewport.setDuration(8);
    viewport.setVisible({2, 4});
    viewport.setPosition(7);
    QCOMPARE(viewport.visible(), (TimeRange{5, 7}));
    viewport.setPosition(1);
    QCOMPARE(viewport.visible(), (TimeRange{1, 3}));
    viewport.setPosition(99);
    QCOMPARE(viewport.position(), 8.0);
}

void tst_Viewport::selectionStaysWithinTheSound_data()
{
    QTest::addColumn<double>("begin");
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("length");
    QTest::newRow("inside") << 1.0 << 3.0 << 2.0;
    QTest::newRow("beyond both ends") << -1.0 << 99.0 << 8.0;
    QTest::newRow("backwards") << 3.0 << 1.0 << 0.0;
    QTest::newRow("outside") << 9.0 << 10.0 << 0.0;
}

void tst_Viewport::selectionStaysWithinTheSound()
{
    QFETCH(double, begin);
    QFETCH(double, end);
    Viewport viewport;
    viewport.setDuration(8);
    viewport.setSelection({begin, end});
    QTEST(viewport.selection().length(), "length");
}

void tst_Viewport::emptySoundHurtsNothing()
{
    Viewport viewport;
    viewport.zoom(2);
    viewport.scroll(1);
    viewport.setPosition(1);
    viewport.setSelection({0, 1});
    QCOMPARE(viewport.visible(), TimeRange{});
    QCOMPARE(viewport.position(), 0.0);
    QVERIFY(viewport.selection().isEmpty());
}

QTEST_APPLESS_MAIN(tst_Viewport)
#include "tst_Viewport.moc"
