#include <QWUtilities/controllers/remote/RemoteButtons.h>

#include <QTest>

#include <limits>
#include <map>

using Calls = std::optional<qw::RemoteButtonCalls>;

namespace
{
/// What is heard of each element that means something, written apart from the product's own table.
const std::map<std::pair<int, int>, QString> meanings{
    {{20, 1}, "0 down up"}, {{18, 1}, "0 down"},    {{21, 1}, "1 down up"}, {{35, 1}, "1 down"},    {{29, 1}, "2 down"},
    {{29, 0}, "2 up"},      {{30, 1}, "3 down"},    {{30, 0}, "3 up"},      {{23, 1}, "4 down up"}, {{3, 1}, "4 down"},
    {{3, 0}, "4 up"},       {{22, 1}, "5 down up"}, {{4, 1}, "5 down"},     {{4, 0}, "5 up"},
};

QString text(const Calls &calls)
{
    if (!calls)
        return "nothing";
    return QString::number(calls->button) + (calls->down ? " down" : "") + (calls->up ? " up" : "");
}
} // namespace

class tst_RemoteButtons : public QObject
{
    Q_OBJECT

private slots:
    void everyElementMeansWhatTheTableSays_data();
    void everyElementMeansWhatTheTableSays();
    void noOtherElementMeansAnything();
    void noOtherValueMeansAnything();
};

void tst_RemoteButtons::everyElementMeansWhatTheTableSays_data()
{
    QTest::addColumn<int>("cookie");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("expected");
    for (const auto &[element, meaning] : meanings)
        QTest::addRow("%d, %d", element.first, element.second) << element.first << element.second << meaning;
}

void tst_RemoteButtons::everyElementMeansWhatTheTableSays()
{
    QFETCH(const int, cookie);
    QFETCH(const int, value);
    QFETCH(const QString, expected);
    QCOMPARE(text(qw::remoteButtonCalls(quint32(cookie), value)), expected);
}

void tst_RemoteButtons::noOtherElementMeansAnything()
{
    int silent = 0;
    for (int cookie = 0; cookie <= 255; ++cookie)
        for (const int value : {-1, 0, 1, 2}) {
            if (meanings.contains({cookie, value}))
                continue;
            QVERIFY2(!qw::remoteButtonCalls(quint32(cookie), value),
                     qPrintable(QString("%1, %2").arg(cookie).arg(value)));
            ++silent;
        }
    QCOMPARE(silent, 256 * 4 - 14);
}

void tst_RemoteButtons::noOtherValueMeansAnything()
{
    for (const auto &[element, meaning] : meanings)
        for (const qint32 value : {std::numeric_limits<qint32>::min(), 3, 257, std::numeric_limits<qint32>::max()})
            QVERIFY(!qw::remoteButtonCalls(quint32(element.first), value));
    for (const quint32 cookie : {256u + 20u, 0x80000014u, 0xffffffffu})
        QVERIFY(!qw::remoteButtonCalls(cookie, 1));
}

QTEST_APPLESS_MAIN(tst_RemoteButtons)
#include "tst_RemoteButtons.moc"
