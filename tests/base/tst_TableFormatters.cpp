#include "fakes/FakeSystem.h"

#include <QWBase/tables/QWBooleanFormatter.h>
#include <QWBase/tables/QWChannelsFormatter.h>
#include <QWBase/tables/QWFileSizeFormatter.h>
#include <QWBase/tables/QWTimeFormatter.h>

#include <QDateTime>
#include <QLocale>
#include <QTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(const platform::Formatter *)

namespace
{
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

void addRow(const char *name, const platform::Formatter &formatter, const QVariant &value, const char *text)
{
    QTest::newRow(name) << &formatter << value << QString(text);
}
} // namespace

/// What lengths, sizes, channels and truths read as.
class tst_TableFormatters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void reads_data();
    void reads();
    void readsNothingOutOfOtherKinds_data();
    void readsNothingOutOfOtherKinds();
    void formatTwelveOfTimesIsAsSet();
    void textsAreTheHostsOwn();
    void sizesFollowTheUsersLanguage();

private:
    void _addTimes() const;
    void _addSizes() const;
    void _addChannels() const;
    void _addTruths() const;

    QWTimeFormatter m_time;
    QWFileSizeFormatter m_size;
    QWChannelsFormatter m_channels;
    QWBooleanFormatter m_truth;
};

void tst_TableFormatters::initTestCase()
{
    QLocale::setDefault(QLocale("en_US"));
    m_time.setTimeFormat(12);
}

void tst_TableFormatters::reads_data()
{
    QTest::addColumn<const platform::Formatter *>("formatter");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    _addTimes();
    _addSizes();
    _addChannels();
    _addTruths();
}

void tst_TableFormatters::_addTimes() const
{
    addRow("no time", m_time, 0.0, "0:00");
    addRow("seconds", m_time, 7, "0:07");
    addRow("rounded up", m_time, 59.5, "1:00");
    addRow("rounded down", m_time, 59.4, "0:59");
    addRow("minutes", m_time, 187.0, "3:07");
    addRow("just below an hour", m_time, 3599, "59:59");
    addRow("one hour", m_time, 3600, "1:00:00");
    addRow("hours", m_time, 3765.2, "1:02:45");
    addRow("many hours", m_time, 360000, "100:00:00");
    addRow("whole numbers of any kind", m_time, QVariant::fromValue<quint64>(187), "3:07");
    addRow("negative time", m_time, -1.0, "");
    addRow("a little less than nothing", m_time, -0.0001, "");
    addRow("no number of seconds", m_time, notANumber, "");
    addRow("endless time", m_time, infinite, "");
    addRow("endless negative time", m_time, -infinite, "");
    addRow("longer than anything", m_time, 1e300, "");
}

void tst_TableFormatters::_addSizes() const
{
    addRow("no bytes", m_size, 0, "0 bytes");
    addRow("one byte", m_size, 1, "1 byte");
    addRow("bytes", m_size, 999, "999 bytes");
    addRow("kilobytes", m_size, 1000, "1.0 kB");
    addRow("rounds up to a megabyte", m_size, 999950, "1.0 MB");
    addRow("does not yet", m_size, 999949, "999.9 kB");
    addRow("megabytes", m_size, 12400000, "12.4 MB");
    addRow("rounds up to a gigabyte", m_size, 999999999, "1.0 GB");
    addRow("gigabytes", m_size, QVariant::fromValue<quint64>(2147483648ULL), "2.1 GB");
    addRow("a fraction of bytes", m_size, 12400000.7, "12.4 MB");
    addRow("the largest number of bytes", m_size, QVariant::fromValue(std::numeric_limits<quint64>::max()), "9.0 EB");
    addRow("negative size", m_size, -1, "");
    addRow("no number of bytes", m_size, notANumber, "");
    addRow("endless size", m_size, infinite, "");
}

void tst_TableFormatters::_addChannels() const
{
    addRow("mono", m_channels, 1, "Mono");
    addRow("stereo", m_channels, 2U, "Stereo");
    addRow("surround", m_channels, 6, "6");
    addRow("many channels", m_channels, 128, "128");
    addRow("channels as a fraction", m_channels, 2.0, "Stereo");
    addRow("channels not known", m_channels, 0, "");
    addRow("negative channels", m_channels, -2, "");
    addRow("no number of channels", m_channels, notANumber, "");
    addRow("endless channels", m_channels, infinite, "");
}

void tst_TableFormatters::_addTruths() const
{
    addRow("true", m_truth, true, "Yes");
    addRow("false", m_truth, false, "No");
    addRow("one", m_truth, 1, "Yes");
    addRow("zero", m_truth, 0.0, "No");
}

void tst_TableFormatters::reads()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    QFETCH(const platform::Formatter *, formatter);
    QFETCH(QVariant, value);
    QTEST(formatter->stringForObjectValue(value), "text");
}

void tst_TableFormatters::readsNothingOutOfOtherKinds_data()
{
    QTest::addColumn<const platform::Formatter *>("formatter");
    QTest::newRow("time") << static_cast<const platform::Formatter *>(&m_time);
    QTest::newRow("size") << static_cast<const platform::Formatter *>(&m_size);
    QTest::newRow("channels") << static_cast<const platform::Formatter *>(&m_channels);
    QTest::newRow("truth") << static_cast<const platform::Formatter *>(&m_truth);
}

void tst_TableFormatters::readsNothingOutOfOtherKinds()
{
    QFETCH(const platform::Formatter *, formatter);
    const QVariantList others{QVariant(),          "12",
                              QByteArray("12"),    QVariantList{12},
                              QVariantMap(),       QDateTime::fromSecsSinceEpoch(12),
                              QStringList{"true"}, QVariant::fromValue<void *>(nullptr)};
    for (const QVariant &other : others)
        QCOMPARE(formatter->stringForObjectValue(other), QString());
}

void tst_TableFormatters::formatTwelveOfTimesIsAsSet()
{
    QWTimeFormatter formatter;
    QCOMPARE(formatter.timeFormat(), int(QWTimeFormatter::MinutesAndSeconds));
    formatter.setTimeFormat(99);
    QCOMPARE(formatter.timeFormat(), 99);
    QCOMPARE(formatter.stringForObjectValue(187), "3:07");
}

void tst_TableFormatters::textsAreTheHostsOwn()
{
    FakeSystem system;
    system.addHostResource("en.lproj/Localizable.strings",
                           "\"Stereo\" = \"Zweikanal\"; \"Yes\" = \"Ja\"; \"1 byte\" = \"1 Byte\";");
    const platform::SystemScope scope(system);
    QCOMPARE(m_channels.stringForObjectValue(2), "Zweikanal");
    QCOMPARE(m_truth.stringForObjectValue(true), "Ja");
    QCOMPARE(m_size.stringForObjectValue(1), "1 Byte");
}

void tst_TableFormatters::sizesFollowTheUsersLanguage()
{
    QLocale::setDefault(QLocale("de_DE"));
    const QString text = m_size.stringForObjectValue(12400000);
    QLocale::setDefault(QLocale("en_US"));
    QCOMPARE(text, "12,4 MB");
}

QTEST_GUILESS_MAIN(tst_TableFormatters)
#include "tst_TableFormatters.moc"
