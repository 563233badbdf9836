#include <QWUtilities/recorder/model/QWVeskFormatFormatter.h>
#include <QWUtilities/recorder/model/QWVeskQualityFormatter.h>
#include <QWUtilities/recorder/model/RecordingFormats.h>

#include <fakes/FakeSystem.h>

#include <QTest>

using namespace qw;

class tst_RecordingFormats : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void titlesMapToCodesAndExtensions_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("extension");
        const auto row = [](const char *title, const char *code, const char *extension) {
            QTest::newRow(title) << code << extension;
        };
        row("AIFF", "aif", "aif");
        row("WAVE", "wav", "wav");
        row("CAF", "caf", "caf");
        row("AAC", "aac", "m4a");
        row("Podcast", "podcast", "m4a");
        row("Apple Lossless", "appleLossless", "m4a");
        row("FLAC", "flac", "flac");
        row("Ogg Vorbis", "vorbis", "ogg");
        row("Metadata as XML", "metaXML", "xml");
        row("Metadata as Text", "metaText", "txt");
    }

    void titlesMapToCodesAndExtensions()
    {
        QFETCH(const QString, code);
        QFETCH(const QString, extension);
        const RecordingFormat *const format = RecordingFormats::withTitle(QTest::currentDataTag());
        QVERIFY(format);
        QCOMPARE(format->code, code);
        QCOMPARE(format->extension, extension);
        QCOMPARE(RecordingFormats::extensionOf(code), extension);
    }

    void unknownCodesAreTheirOwnExtensionAndUnknownTitlesNoFormat()
    {
        QCOMPARE(RecordingFormats::extensionOf("mp3"), "mp3");
        QCOMPARE(RecordingFormats::extensionOf(""), "");
        QVERIFY(!RecordingFormats::withTitle("aif"));
        QVERIFY(!RecordingFormats::withTitle(""));
        QCOMPARE(RecordingFormats::all().size(), size_t(10));
    }

    void formatsRenderInTheirOrder_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("two") << QVariant(QStringList{"flac", "aac"}) << "AIFF, WAVE, CAF, AAC, FLAC";
        QTest::newRow("all") << QVariant(QStringList{"vorbis", "flac", "appleLossless", "podcast", "aac"})
                             << "AIFF, WAVE, CAF, AAC, Podcast, Apple Lossless, FLAC, Ogg Vorbis";
        QTest::newRow("none") << QVariant(QStringList{}) << "AIFF, WAVE, CAF";
        QTest::newRow("others") << QVariant(QStringList{"aif", "metaXML", "FLAC", "mp3"}) << "AIFF, WAVE, CAF";
        QTest::newRow("any list") << QVariant(QVariantList{QString("podcast"), 7}) << "AIFF, WAVE, CAF, Podcast";
        QTest::newRow("text") << QVariant("aac") << "";
        QTest::newRow("number") << QVariant(3) << "";
        QTest::newRow("nothing") << QVariant() << "";
    }

    void formatsRenderInTheirOrder()
    {
        QFETCH(const QVariant, value);
        QTEST(QWVeskFormatFormatter().stringForObjectValue(value), "text");
    }

    void qualitiesAreWordsOfTheUsersLanguage()
    {
        FakeSystem system;
        platform::SystemScope scope(system);
        system.addHostResource("Localizable.strings", "\"High\" = \"Hoch\"; \"unknown quality\" = \"wrong\";");
        const QWVeskQualityFormatter formatter;
        QCOMPARE(formatter.stringForObjectValue(0), "Hoch");
        QCOMPARE(formatter.stringForObjectValue(1U), "Medium");
        QCOMPARE(formatter.stringForObjectValue(2.0), "Low");
        QCOMPARE(formatter.stringForObjectValue(3), "unknown quality");
        QCOMPARE(formatter.stringForObjectValue(-1), "unknown quality");
        QCOMPARE(formatter.stringForObjectValue(4294967296LL), "unknown quality");
        QCOMPARE(formatter.stringForObjectValue(QVariant()), "unknown quality");
        QCOMPARE(formatter.stringForObjectValue("0"), "unknown quality");
    }
};

QTEST_GUILESS_MAIN(tst_RecordingFormats)
#include "tst_RecordingFormats.moc"
