#include "controllers/ScrollWheelFixture.h"
#include "fakes/QWTestMain.h"

#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

using platform::ScrollEvent;

/// A view of the host that hands its wheel events on.
class ScrollView : public QWidget
{
public:
    explicit ScrollView(QObject &target)
        : m_target(target)
    {
    }

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        event->setAccepted(QWScrollWheelManager::scrollWheelEventTarget(*event, &m_target));
    }

private:
    QObject &m_target;
};

namespace
{
QWheelEvent wheel(const QPoint &angle, Qt::KeyboardModifiers modifiers = {}, const QPoint &pixels = {})
{
    return {{5, 5}, {5, 5}, pixels, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase, false};
}
} // namespace

/// Scroll events made from those of the toolkit.
class tst_ScrollEvent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notchIsOneLine_data();
    void notchIsOneLine();
    void modifiersAreThoseOfThePlatform_data();
    void modifiersAreThoseOfThePlatform();
    void capsLockComesFromTheKeyboard();
    void axesStayWhereQtDoesNotSwapThem();
    void wheelOverAViewSendsTheAction();
    void gestureWithoutMovementSendsNothing();
};

void tst_ScrollEvent::notchIsOneLine_data()
{
    QTest::addColumn<QPoint>("angle"); // in eighths of a degree
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::newRow("notch up") << QPoint(0, 120) << 0.0 << 1.0;
    QTest::newRow("notch down") << QPoint(0, -120) << 0.0 << -1.0;
    QTest::newRow("two notches") << QPoint(0, 240) << 0.0 << 2.0;
    QTest::newRow("notch to the left") << QPoint(120, 0) << 1.0 << 0.0;
    QTest::newRow("notch to the right") << QPoint(-120, 0) << -1.0 << 0.0;
    QTest::newRow("fine wheel") << QPoint(0, 15) << 0.0 << 0.125;
    QTest::newRow("touchpad") << QPoint(-1, 3) << -1 / 120.0 << 0.025;
    QTest::newRow("diagonal") << QPoint(120, -60) << 1.0 << -0.5;
    QTest::newRow("end of a gesture") << QPoint() << 0.0 << 0.0;
}

void tst_ScrollEvent::notchIsOneLine()
{
    QFETCH(QPoint, angle);
    const FakeSystem system;
    const platform::SystemScope scope(const_cast<FakeSystem &>(system));
    const ScrollEvent event(wheel(angle, {}, {7, 9}));
    QTEST(event.deltaX, "x");
    QTEST(event.deltaY, "y");
    QCOMPARE(event.modifierFlags, 0u);
}

void tst_ScrollEvent::modifiersAreThoseOfThePlatform_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<quint32>("flags");
    QTest::newRow("shift") << Qt::KeyboardModifiers(Qt::ShiftModifier) << 0x20000u;
    QTest::newRow("meta is control") << Qt::KeyboardModifiers(Qt::MetaModifier) << 0x40000u;
    QTest::newRow("alt is option") << Qt::KeyboardModifiers(Qt::AltModifier) << 0x80000u;
    QTest::newRow("control is command") << Qt::KeyboardModifiers(Qt::ControlModifier) << 0x100000u;
    QTest::newRow("keypad") << Qt::KeyboardModifiers(Qt::KeypadModifier) << 0x200000u;
    QTest::newRow("group switch") << Qt::KeyboardModifiers(Qt::GroupSwitchModifier) << 0u;
    QTest::newRow("several") << (Qt::ShiftModifier | Qt::ControlModifier) << 0x120000u;
}

void tst_ScrollEvent::modifiersAreThoseOfThePlatform()
{
    QFETCH(Qt::KeyboardModifiers, modifiers);
    const ScrollWheelFixture host;
    QTEST(ScrollEvent(wheel({0, 120}, modifiers)).modifierFlags, "flags");
}

void tst_ScrollEvent::capsLockComesFromTheKeyboard()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:"), host.record(true, 0x10000, "scroll:")});
    host.system.keyboard.capsLock = true;
    QCOMPARE(ScrollEvent(wheel({0, 120})).modifierFlags, 0x10000u);
    QVERIFY(host.send(wheel({0, 120})));
    host.system.keyboard.capsLock = false;
    QVERIFY(host.send(wheel({0, 120})));
    QCOMPARE(host.target.sent.at(0).first, "scroll:");
    QCOMPARE(host.target.sent.at(1).first, "zoom:");
}

void tst_ScrollEvent::axesStayWhereQtDoesNotSwapThem()
{
    const ScrollWheelFixture host;
    QVERIFY(QGuiApplication::platformName() != "xcb");
    const ScrollEvent event(wheel({0, 120}, Qt::AltModifier));
    QCOMPARE(event.deltaX, 0.0);
    QCOMPARE(event.deltaY, 1.0);
}

void tst_ScrollEvent::wheelOverAViewSendsTheAction()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:"), host.record(false, 0x120000, "scroll:", true)});
    ScrollView view(host.target);
    view.resize(100, 100);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const auto turn = [&](const QPoint &angle, Qt::KeyboardModifiers modifiers) {
        const QPointF place(5, 5);
        QWheelEvent event(place, view.mapToGlobal(place), {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view.windowHandle(), &event);
    };
    turn({0, -60}, {});
    turn({240, 0}, Qt::ShiftModifier | Qt::ControlModifier);
    turn({0, 120}, Qt::ShiftModifier);
    const QList<std::pair<QString, double>> sent{{"zoom:", -0.5}, {"scroll:", -2.0}};
    QCOMPARE(host.target.sent, sent);
}

void tst_ScrollEvent::gestureWithoutMovementSendsNothing()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:"), host.record(false, 0, "scroll:")});
    const QWheelEvent end({5, 5}, {5, 5}, {}, {}, Qt::NoButton, {}, Qt::ScrollEnd, false);
    QVERIFY(!host.send(end));
    QVERIFY(host.target.sent.isEmpty());
}

QW_TEST_MAIN(tst_ScrollEvent)

#include "tst_ScrollEvent.moc"
