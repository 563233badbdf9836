#include "RecorderTools.h"

#include <QWBase/QWApplicationLog.h>

#include <QTest>

#include <limits>

using namespace recordertest;

class tst_QWVeskRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_system = std::make_unique<FakeSystem>();
        m_scope = std::make_unique<platform::SystemScope>(*m_system);
        m_browser = std::make_unique<NotingBrowser>();
        m_system->makeDirectory("~/Music");
        m_folder = m_system->real("~/Music");
    }

    void cleanup()
    {
        m_recording.reset();
        m_device.reset();
        m_browser.reset();
        m_scope.reset();
        m_system.reset();
    }

    void valuesAreReadByKey()
    {
        take({{"title", "One"},
              {"filename", "one"},
              {"fileSize", 7LL},
              {"length", 2.5},
              {"channels", 2LL},
              {"quality", 1LL},
              {"formats", QVariantList{"aac"}},
              {"locked", true},
              {"keywords", "bird"},
              {"creationDate", QDateTime(QDate(2009, 3, 5), QTime(16, 7), Qt::UTC)},
              {"modificationDate", QDateTime(QDate(2009, 3, 6), QTime(16, 7), Qt::UTC)}});
        QCOMPARE(m_recording->valueForKey("title"), QVariant("One"));
        QCOMPARE(m_recording->valueForKey("filename"), QVariant("one"));
        QCOMPARE(m_recording->valueForKey("fileSize"), QVariant(7ULL));
        QCOMPARE(m_recording->valueForKey("length"), QVariant(2.5));
        QCOMPARE(m_recording->valueForKey("channels"), QVariant(2U));
        QCOMPARE(m_recording->valueForKey("quality"), QVariant(1U));
        QCOMPARE(m_recording->valueForKey("formats"), QVariant(QStringList{"aac"}));
        QCOMPARE(m_recording->valueForKey("locked"), QVariant(true));
        QCOMPARE(m_recording->valueForKey("keywords"), QVariant("bird"));
        QCOMPARE(m_recording->valueForKey("creationDate").toDateTime().date().day(), 5);
        QCOMPARE(m_recording->valueForKey("modificationDate").toDateTime().date().day(), 6);
        QVERIFY(!m_recording->valueForKey("downloadPath").isValid());
        QVERIFY(!m_recording->valueForKey("device").isValid());
    }

    void missingValuesAreNoneOrZero()
    {
        take({});
        for (const char *key : {"title", "filename", "keywords", "creationDate", "modificationDate", "formats"})
            QVERIFY(!m_recording->valueForKey(key).isValid());
        for (const char *key : {"fileSize", "length", "channels", "quality"})
            QCOMPARE(m_recording->valueForKey(key).toDouble(), 0.0);
        QCOMPARE(m_recording->valueForKey("locked"), QVariant(false));
    }

    void asksForTheTakeInItsFormat_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("extension");
        QTest::newRow("podcast") << "podcast"
                                 << "m4a";
        QTest::newRow("FLAC") << "flac"
                              << "flac";
        QTest::newRow("text") << "metaText"
                              << "txt";
        QTest::newRow("unknown") << "mp3"
                                 << "mp3";
    }

    void asksForTheTakeInItsFormat()
    {
        QFETCH(const QString, format);
        QFETCH(const QString, extension);
        take({{"title", "Take 1"}, {"filename", "take-1"}});
        m_recording->downloadToAs(m_folder, format);
        const auto &request = downloads().started.back()->request;
        QCOMPARE(request.url.toString(), "http://192.0.2.7:8123/download?filename=take-1&format=" + format);
        QCOMPARE(request.destination, m_folder + "/Take 1." + extension);
        QVERIFY(!request.overwrite);
        QCOMPARE(m_recording->downloadPath(), request.destination);
        QVERIFY(m_recording->isDownloading());
    }

    void tellsItsProgressThenItsEnd()
    {
        take({{"title", "One"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "wav");
        downloads().respond(8);
        QCOMPARE(m_recording->downloadSize(), 8ULL);
        downloads().receive("12");
        downloads().receive("345678");
        QCOMPARE(m_browser->fractions, (std::vector{0.25F, 1.0F}));
        QCOMPARE(m_recording->downloaded(), 8ULL);
        downloads().finish();
        QCOMPARE(m_browser->finished, QStringList{"One"});
        QVERIFY(!m_recording->isDownloading());
        QCOMPARE(m_system->readFile("~/Music/One.wav"), "12345678");
    }

    void anUnknownLengthIsTheLargestNumber()
    {
        take({{"title", "One"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "wav");
        downloads().respond(-1);
        QCOMPARE(m_recording->downloadSize(), std::numeric_limits<quint64>::max());
        downloads().receive("12");
        QVERIFY(m_browser->fractions.back() < 0.001F);
    }

    void aLengthOfZeroOrTooShortDoesNotHurt()
    {
        take({{"title", "One"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "wav");
        downloads().respond(0);
        downloads().receive("");
        downloads().receive("12");
        downloads().respond(1);
        downloads().receive("12");
        QCOMPARE(m_browser->fractions, (std::vector{1.0F, 1.0F, 2.0F}));
    }

    void aNameThatIsTakenIsKeptInThePathAskedFor()
    {
        m_system->writeFile("~/Music/One.wav", "older");
        take({{"title", "One"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "wav");
        downloads().respond(1);
        downloads().receive("1");
        downloads().finish();
        QCOMPARE(m_system->readFile("~/Music/One.wav"), "older");
        QVERIFY(downloads().started.back()->path != m_recording->downloadPath());
        QCOMPARE(m_recording->downloadPath(), m_folder + "/One.wav");
    }

    void stopsWhenTheBrowserSaysSo()
    {
        take({{"title", "One"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "wav");
        downloads().respond(8);
        m_browser->stops = true;
        QVERIFY(!downloads().started.back()->cancelled);
        downloads().receive("1");
        QVERIFY(downloads().started.back()->cancelled);
        QCOMPARE(m_browser->stopped, QStringList{"One"});
        QVERIFY(!m_recording->isDownloading());
    }

    void aFailureIsLoggedAndTold()
    {
        take({{"title", "One"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "wav");
        downloads().fail("The disk is full.");
        QCOMPARE(m_browser->failures, QStringList{"The disk is full."});
        QVERIFY(!m_recording->isDownloading());
        QVERIFY(log().contains("did fail with error"));
    }

    void namesThatNoUrlAllowsAreFailedDownloads_data()
    {
        QTest::addColumn<QString>("filename");
        for (const char *name : {"take 1", "täke", "a\"b", "a<b", "50%", "a^b"})
            QTest::newRow(name) << QString(name);
    }

    void namesThatNoUrlAllowsAreFailedDownloads()
    {
        QFETCH(const QString, filename);
        take({{"title", "One"}, {"filename", filename}});
        m_recording->downloadToAs(m_folder, "wav");
        QVERIFY(m_browser->failures.isEmpty());
        QVERIFY(!downloads().started.back()->request.url.isValid());
        QTRY_COMPARE(m_browser->failures.size(), 1);
    }

    void aSlashInTheTitleNamesAFolder()
    {
        take({{"title", "Day 1/Birds/Take 1"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "caf");
        QCOMPARE(downloads().started.back()->request.destination, m_folder + "/Day 1/Birds/Take 1.caf");
        QVERIFY(QFileInfo(m_folder + "/Day 1/Birds").isDir());
    }

    void anAbsoluteTitleStaysInTheFolder()
    {
        take({{"title", "/tmp/x"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "caf");
        QVERIFY(downloads().started.back()->request.destination.startsWith(m_folder + '/'));
        QVERIFY(QFileInfo(m_folder + "/tmp").isDir());
    }

    void whatCannotBePlacedFailsWithoutARequest_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("leaves") << "../x";
        QTest::newRow("leaves within") << "a/../../x";
        QTest::newRow("comes back") << "a/../x";
        QTest::newRow("below a file") << "file/x";
        QTest::newRow("long folder") << QString(300, u'x') + "/x";
        QTest::newRow("long folder below others") << "a/b/" + QString(300, u'x') + "/x";
        QTest::newRow("too many folders") << QString("a/").repeated(33) + "x";
    }

    void whatCannotBePlacedFailsWithoutARequest()
    {
        QFETCH(const QString, title);
        m_system->writeFile("~/Music/file", "1");
        take({{"title", title}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "caf");
        QVERIFY(downloads().started.empty());
        QVERIFY(m_browser->failures.isEmpty());
        QTRY_COMPARE(m_browser->failures.size(), 1);
        QVERIFY(log().contains("did fail with error"));
        QVERIFY(!m_recording->isDownloading());
        QCOMPARE(QDir(m_folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("file"));
    }

    void foldersOfWhatIsNotSavedAreTakenAway_data()
    {
        QTest::addColumn<QString>("filename");
        QTest::addColumn<bool>("cancels");
        QTest::newRow("fails") << "one" << false;
        QTest::newRow("is stopped") << "one" << true;
        QTest::newRow("never begins") << "an umlaut: \u00e4" << false;
    }

    void foldersOfWhatIsNotSavedAreTakenAway()
    {
        QFETCH(const QString, filename);
        QFETCH(const bool, cancels);
        m_system->makeDirectory("~/Music/Day 1");
        take({{"title", "Day 1/Birds/Early/x"}, {"filename", filename}});
        m_recording->downloadToAs(m_folder, "caf");
        QCOMPARE(QFileInfo(m_folder + "/Day 1/Birds/Early").isDir(), filename == "one");
        if (cancels)
            m_recording->cancelDownload();
        else if (filename == "one")
            downloads().fail("no");
        QTRY_COMPARE(m_browser->failures.size(), cancels ? 0 : 1);
        QVERIFY(QFileInfo(m_folder + "/Day 1").isDir()); // was there before
        QVERIFY(!QFileInfo::exists(m_folder + "/Day 1/Birds"));
    }

    void foldersThatHoldSomethingStay()
    {
        take({{"title", "Birds/x"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "caf");
        m_system->writeFile("~/Music/Birds/other", "1");
        downloads().fail("no");
        QVERIFY(QFileInfo::exists(m_folder + "/Birds/other"));
        take({{"title", "Frogs/x"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "caf");
        downloads().finish();
        m_recording->cancelDownload();
        QVERIFY(QFileInfo::exists(m_folder + "/Frogs/x.caf"));
    }

    void aFolderThatIsGoneIsNotMadeAnew()
    {
        take({{"title", "a/One"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder + "/gone", "caf");
        QTRY_COMPARE(m_browser->failures.size(), 1);
        QVERIFY(!QFileInfo::exists(m_folder + "/gone"));
    }

    void dotsThatAreNoStepUpArePartOfTheName_data()
    {
        QTest::addColumn<QString>("title");
        for (const char *title : {"..", "..x", "a..b", "...", ""})
            QTest::newRow(title) << QString(title);
    }

    void dotsThatAreNoStepUpArePartOfTheName()
    {
        QFETCH(const QString, title);
        take({{"title", title}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "caf");
        QCOMPARE(QFileInfo(downloads().started.back()->request.destination).path(), m_folder);
    }

    void aCancelledDownloadTellsNobody()
    {
        take({{"title", "../x"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "caf");
        m_recording->cancelDownload();
        take({{"title", "One"}, {"filename", "one"}});
        m_recording->downloadToAs(m_folder, "caf");
        m_recording->cancelDownload();
        QVERIFY(downloads().started.back()->cancelled);
        QCoreApplication::processEvents();
        QVERIFY(m_browser->failures.isEmpty());
    }

    void aTakeWhoseRecorderHasGoneFails()
    {
        take({{"title", "One"}, {"filename", "one"}});
        m_device.reset();
        QVERIFY(!m_recording->device());
        m_recording->downloadToAs(m_folder, "caf");
        QTRY_VERIFY(!m_recording->isDownloading());
    }

private:
    void take(const QVariantMap &entry)
    {
        m_device = loadedDevice(*m_system, *m_browser, {entry});
        m_recording = m_device->recordings().front();
    }

    FakeUrlDownloads &downloads() { return m_system->urlDownloads; }
    QByteArray log() { return m_system->readFile(QWApplicationLog::sharedLog().path()).value_or(""); }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
    std::unique_ptr<NotingBrowser> m_browser;
    std::shared_ptr<QWVeskDevice> m_device;
    std::shared_ptr<QWVeskRecording> m_recording;
    QString m_folder;
};

QTEST_GUILESS_MAIN(tst_QWVeskRecording)
#include "tst_QWVeskRecording.moc"
