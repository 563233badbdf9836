#include <QWBase/QWEvents.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

class tst_QWEvents : public QObject
{
    Q_OBJECT

private slots:
    void arrowKeysAreToldByDirection_data();
    void arrowKeysAreToldByDirection();
    void onlyKeysGoingDownCount_data();
    void onlyKeysGoingDownCount();
    void optionKeyIsSeenInInputEvents();
};

void tst_QWEvents::arrowKeysAreToldByDirection_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("arrow");
    QTest::addColumn<bool>("vertical");
    QTest::newRow("left") << int(Qt::Key_Left) << true << false;
    QTest::newRow("right") << int(Qt::Key_Right) << true << false;
    QTest::newRow("up") << int(Qt::Key_Up) << true << true;
    QTest::newRow("down") << int(Qt::Key_Down) << true << true;
    QTest::newRow("page up") << int(Qt::Key_PageUp) << false << false;
    QTest::newRow("letter") << int(Qt::Key_A) << false << false;
    QTest::newRow("unknown") << 0 << false << false;
}

void tst_QWEvents::arrowKeysAreToldByDirection()
{
    QFETCH(int, key);
    const QKeyEvent event(QEvent::KeyPress, key, Qt::ShiftModifier | Qt::KeypadModifier);
    QTEST(QWEvents::isArrowKeyDownEvent(event), "arrow");
    QTEST(QWEvents::isVerticalArrowKeyDownEvent(event), "vertical");
}

void tst_QWEvents::onlyKeysGoingDownCount_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("down");
    QTest::newRow("press") << int(QEvent::KeyPress) << true;
    QTest::newRow("shortcut override") << int(QEvent::ShortcutOverride) << true;
    QTest::newRow("release") << int(QEvent::KeyRelease) << false;
}

void tst_QWEvents::onlyKeysGoingDownCount()
{
    QFETCH(int, type);
    const QKeyEvent event(QEvent::Type(type), Qt::Key_Up, Qt::NoModifier);
    QTEST(QWEvents::isArrowKeyDownEvent(event), "down");
    QTEST(QWEvents::isVerticalArrowKeyDownEvent(event), "down");
}

void tst_QWEvents::optionKeyIsSeenInInputEvents()
{
    const auto mouse = [](Qt::KeyboardModifiers modifiers) {
        return QMouseEvent(QEvent::MouseButtonPress, {}, {}, Qt::LeftButton, Qt::LeftButton, modifiers);
    };
    const QWheelEvent wheel({}, {}, {}, {0, 120}, Qt::NoButton, Qt::AltModifier, Qt::NoScrollPhase, false);
    QVERIFY(QWEvents::optionKeyDown(QKeyEvent(QEvent::KeyRelease, Qt::Key_A, Qt::AltModifier | Qt::ShiftModifier)));
    QVERIFY(QWEvents::optionKeyDown(mouse(Qt::AltModifier)));
    QVERIFY(QWEvents::optionKeyDown(wheel));
    QVERIFY(!QWEvents::optionKeyDown(mouse(Qt::ControlModifier | Qt::MetaModifier)));
    QVERIFY(!QWEvents::optionKeyDown(QEvent(QEvent::FocusIn)));
}

QTEST_APPLESS_MAIN(tst_QWEvents)
#include "tst_QWEvents.moc"
