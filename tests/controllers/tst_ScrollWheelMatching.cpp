#include "ScrollWheelFixture.h"
#include "fakes/QWTestMain.h"

#include <cmath>
#include <limits>

using platform::ScrollEvent;

namespace
{
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
using Sent = std::pair<QString, double>;
} // namespace

/// Which binding an event finds, and what it sends.
class tst_ScrollWheelMatching : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void axisAndAmountComeFromTheDeltas_data();
    void axisAndAmountComeFromTheDeltas();
    void notANumberIsMovement();
    void eventWithoutMovementIsIgnored();
    void modifiersMatchExactly_data();
    void modifiersMatchExactly();
    void otherBitsOfAnEventDoNotCount();
    void firstOfEqualBindingsAlone();
    void reverseFlipsTheSign_data();
    void reverseFlipsTheSign();
    void reverseFlipsTheSignOfNotANumber();
    void unansweredActionEndsTheSearch_data();
    void unansweredActionEndsTheSearch();
    void everyEventSends();
    void targetMayBeNone();
    void actionMayChangeTheBindings();
    void nothingMatchesBeforeTheLaunch();
    void entriesOfWrongTypes_data();
    void entriesOfWrongTypes();
    void recordsThatAreNoneAreLeftOut();
};

void tst_ScrollWheelMatching::axisAndAmountComeFromTheDeltas_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<QString>("action");
    QTest::addColumn<double>("amount");
    QTest::newRow("up") << 0.0 << 1.0 << "zoom:" << 1.0;
    QTest::newRow("down") << 0.0 << -1.0 << "zoom:" << -1.0;
    QTest::newRow("fraction") << 0.0 << 0.125 << "zoom:" << 0.125;
    QTest::newRow("left") << 2.0 << 0.0 << "scroll:" << 2.0;
    QTest::newRow("diagonal is vertical") << 5.0 << -0.01 << "zoom:" << -0.01;
    QTest::newRow("unlimited") << 0.0 << infinity << "zoom:" << infinity;
    QTest::newRow("smallest") << 0.0 << std::numeric_limits<double>::denorm_min()
                              << "zoom:" << std::numeric_limits<double>::denorm_min();
    QTest::newRow("negative zero is none") << 1.0 << -0.0 << "scroll:" << 1.0;
}

void tst_ScrollWheelMatching::axisAndAmountComeFromTheDeltas()
{
    QFETCH(double, x);
    QFETCH(double, y);
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:"), host.record(false, 0, "scroll:")});
    QVERIFY(host.send(host.event(x, y)));
    QCOMPARE(host.target.sent.size(), 1);
    QTEST(host.target.sent[0].first, "action");
    QTEST(host.target.sent[0].second, "amount");
}

void tst_ScrollWheelMatching::notANumberIsMovement()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:"), host.record(false, 0, "scroll:")});
    QVERIFY(host.send(host.event(3, notANumber)));
    QCOMPARE(host.target.sent[0].first, "zoom:");
    QVERIFY(std::isnan(host.target.sent[0].second));
    QVERIFY(host.send(host.event(notANumber, 0)));
    QCOMPARE(host.target.sent[1].first, "scroll:");
    QVERIFY(std::isnan(host.target.sent[1].second));
}

void tst_ScrollWheelMatching::eventWithoutMovementIsIgnored()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:"), host.record(false, 0, "scroll:")});
    QVERIFY(!host.send(host.event(0, 0)));
    QVERIFY(!host.send(host.event(-0.0, -0.0)));
    QVERIFY(host.target.sent.isEmpty());
}

void tst_ScrollWheelMatching::modifiersMatchExactly_data()
{
    QTest::addColumn<quint32>("bit");
    QTest::newRow("caps lock") << 0x10000u;
    QTest::newRow("shift") << 0x20000u;
    QTest::newRow("control") << 0x40000u;
    QTest::newRow("option") << 0x80000u;
    QTest::newRow("command") << 0x100000u;
}

void tst_ScrollWheelMatching::modifiersMatchExactly()
{
    QFETCH(quint32, bit);
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:"), host.record(true, bit, "scroll:")});
    QVERIFY(host.send(host.event(0, 1)));
    QVERIFY(host.send(host.event(0, 2, bit)));
    for (quint32 other = 0x10000; other <= 0x100000; other <<= 1) {
        if (other != bit)
            QVERIFY(!host.send(host.event(0, 3, bit | other)));
    }
    QCOMPARE(host.target.sent, QList<Sent>({{"zoom:", 1.0}, {"scroll:", 2.0}}));
}

void tst_ScrollWheelMatching::otherBitsOfAnEventDoNotCount()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0x20000, "zoom:"), host.record(true, 0x220000, "scroll:")});
    QVERIFY(host.send(host.event(0, 1, 0x220000 | 0x800000 | 0x102))); // keypad, function, left and right keys
    QCOMPARE(host.target.sent, QList<Sent>({{"zoom:", 1.0}}));
}

void tst_ScrollWheelMatching::firstOfEqualBindingsAlone()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0x80000, "scroll:"), host.record(true, 0, "zoom:"), host.record(true, 0, "scroll:")});
    QVERIFY(host.send(host.event(0, 1)));
    QCOMPARE(host.target.sent, QList<Sent>({{"zoom:", 1.0}}));
}

void tst_ScrollWheelMatching::reverseFlipsTheSign_data()
{
    QTest::addColumn<double>("amount");
    QTest::newRow("up") << 1.0;
    QTest::newRow("down") << -2.5;
    QTest::newRow("unlimited") << infinity;
}

void tst_ScrollWheelMatching::reverseFlipsTheSign()
{
    QFETCH(double, amount);
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:", true)});
    QVERIFY(host.send(host.event(0, amount)));
    QCOMPARE(host.target.sent, QList<Sent>({{"zoom:", -amount}}));
}

void tst_ScrollWheelMatching::reverseFlipsTheSignOfNotANumber()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:", true)});
    QVERIFY(host.send(host.event(0, std::copysign(notANumber, 1.0))));
    QVERIFY(std::signbit(host.target.sent[0].second));
}

void tst_ScrollWheelMatching::unansweredActionEndsTheSearch_data()
{
    QTest::addColumn<QVariant>("action");
    QTest::newRow("unknown") << QVariant("fly:");
    QTest::newRow("none") << QVariant();
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("no text") << QVariant(42);
    QTest::newRow("without argument") << QVariant("wantsNothing");
    QTest::newRow("of another type") << QVariant("wantsText:");
    QTest::newRow("Qt's own") << QVariant("deleteLater");
    QTest::newRow("too many colons") << QVariant("zoom::");
}

void tst_ScrollWheelMatching::unansweredActionEndsTheSearch()
{
    QFETCH(QVariant, action);
    ScrollWheelFixture host;
    QVariantMap unanswered = host.record(true, 0, "");
    if (action.isValid())
        unanswered.insert("action", action);
    else
        unanswered.remove("action");
    host.store(QVariantList{unanswered, host.record(true, 0, "zoom:")});
    host.load();
    QVERIFY(!host.send(host.event(0, 1)));
    QVERIFY(host.target.sent.isEmpty());
}

void tst_ScrollWheelMatching::everyEventSends()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:")});
    for (int i = 0; i < 3; ++i)
        QVERIFY(host.send(host.event(0, 0.25)));
    QCOMPARE(host.target.sent, QList<Sent>({{"zoom:", 0.25}, {"zoom:", 0.25}, {"zoom:", 0.25}}));
}

void tst_ScrollWheelMatching::targetMayBeNone()
{
    ScrollWheelFixture host;
    host.load({host.record(true, 0, "zoom:")});
    QVERIFY(!QWScrollWheelManager::scrollWheelEventTarget(host.event(0, 1), nullptr));
}

/// Adds bindings while it acts, so that the list moves in memory.
class EditingTarget : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void zoom(double)
    {
        for (int i = 0; i < 100; ++i)
            QWScrollWheelManager::defaultManager().addAction();
    }
};

void tst_ScrollWheelMatching::actionMayChangeTheBindings()
{
    ScrollWheelFixture host;
    host.ship({host.record(true, 0, "zoom:")});
    EditingTarget editing;
    const QWScrollWheelManager &manager = host.load();
    QVERIFY(QWScrollWheelManager::scrollWheelEventTarget(host.event(0, 1), &editing));
    QCOMPARE(manager.actions().size(), 101);
}

void tst_ScrollWheelMatching::nothingMatchesBeforeTheLaunch()
{
    ScrollWheelFixture host;
    host.ship({host.record(true, 0, "zoom:")});
    QVERIFY(!host.send(host.event(0, 1)));
}

void tst_ScrollWheelMatching::entriesOfWrongTypes_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("isSent"); // as vertical, without modifiers
    QTest::addColumn<double>("amount");
    QTest::newRow("index of the pop-up") << "vertical" << QVariant(1) << true << 1.0;
    QTest::newRow("real number") << "vertical" << QVariant(1.0) << true << 1.0;
    QTest::newRow("YES") << "vertical" << QVariant("YES") << true << 1.0;
    QTest::newRow("NO") << "vertical" << QVariant("NO") << false << 0.0;
    QTest::newRow("list") << "vertical" << QVariant(QVariantList{1}) << false << 0.0;
    QTest::newRow("modifiers as text") << "modifiers" << QVariant("0") << true << 1.0;
    QTest::newRow("modifiers as a fraction") << "modifiers" << QVariant(0.9) << true << 1.0;
    QTest::newRow("modifiers beyond all") << "modifiers" << QVariant(1e300) << true << 1.0;
    QTest::newRow("modifiers with more bits") << "modifiers" << QVariant(qlonglong(1) << 40) << false << 0.0;
    QTest::newRow("modifiers as data") << "modifiers" << QVariant(QByteArray("xx")) << true << 1.0;
    QTest::newRow("negative modifiers") << "modifiers" << QVariant(-1) << false << 0.0;
    QTest::newRow("reverse as text") << "reverse" << QVariant("true") << true << -1.0;
    QTest::newRow("reverse as number") << "reverse" << QVariant(2) << true << -1.0;
    QTest::newRow("reverse as dictionary") << "reverse" << QVariant(QVariantMap{}) << true << 1.0;
}

void tst_ScrollWheelMatching::entriesOfWrongTypes()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    ScrollWheelFixture host;
    QVariantMap odd = host.record(true, 0, "zoom:");
    odd.insert(key, value);
    host.store(QVariantList{odd});
    host.load();
    QTEST(host.send(host.event(0, 1)), "isSent");
    QTEST(host.target.sent.isEmpty() ? 0.0 : host.target.sent[0].second, "amount");
}

void tst_ScrollWheelMatching::recordsThatAreNoneAreLeftOut()
{
    ScrollWheelFixture host;
    host.store(QVariantList{"text", 7, host.record(true, 0, "zoom:"), QVariantList{}});
    const QWScrollWheelManager &manager = host.load();
    QCOMPARE(manager.actions(), QVariantList{host.record(true, 0, "zoom:")});
}

QW_TEST_MAIN(tst_ScrollWheelMatching)

#include "tst_ScrollWheelMatching.moc"
