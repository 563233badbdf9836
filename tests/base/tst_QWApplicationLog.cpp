#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWApplicationLog.h>

#include <QFileInfo>
#include <QRegularExpression>

#include <thread>

using platform::SystemScope;

/// One fake machine for each test.
class tst_QWApplicationLog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void entryHoldsTimeLevelDomainTextAndPlace();
    void onlyKnownPartsOfThePlaceAreTold();
    void linesOfAMessageAreIndented();
    void formatIsFilled_data();
    void formatIsFilled();
    void debugIsNotWritten();
    void entriesAreAppendedAcrossRuns();
    void removedFileIsMadeAnew();
    void fileThatCannotBeWrittenIsNoFailure();
    void entriesOfManyThreadsStayWhole();
    void openingShowsTheFileAndMakesIt();
    void fileIsNamedAfterTheApplication();

private:
    QString _written() const { return QString::fromUtf8(m_system->readFile(logFile).value_or("nothing written")); }

    static constexpr auto logFile = "~/Library/Logs/Quorwell/Test Host.log";
    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<SystemScope> m_scope;
};

void tst_QWApplicationLog::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<SystemScope>(*m_system);
}

void tst_QWApplicationLog::cleanup()
{
    m_scope.reset();
    m_system.reset();
}

void tst_QWApplicationLog::entryHoldsTimeLevelDomainTextAndPlace()
{
    m_system->clock.advance(std::chrono::milliseconds(42));
    auto &log = QWApplicationLog::sharedLog();
    log.warningMessage(
        {"QWRemoteControl", "/a/b/QWRemoteControl.cpp", 120, "_initQueue", reinterpret_cast<void *>(0x2a)},
        "No queue: 100 %@");
    QCOMPARE(_written(), QString("2009-03-05 16:07:00.042 warning [QWRemoteControl] No queue: 100 %@ "
                                 "(_initQueue, QWRemoteControl.cpp:120, 0x2a)\n"));
    QCOMPARE(&QWApplicationLog::sharedLog(), &log);
}

void tst_QWApplicationLog::onlyKnownPartsOfThePlaceAreTold()
{
    QWApplicationLog::sharedLog().infoMessage({}, "a");
    QWApplicationLog::sharedLog().logContextFormatArguments(9, nullptr, "b");
    QWApplicationLog::sharedLog().errorMessage({"d"}, "c");
    QCOMPARE(_written(), QString("2009-03-05 16:07:00.000 info a\n"
                                 "2009-03-05 16:07:00.000 error b\n"
                                 "2009-03-05 16:07:00.000 error [d] c\n"));
}

void tst_QWApplicationLog::linesOfAMessageAreIndented()
{
    QWApplicationLog::sharedLog().infoMessage({}, "reason\n2009 frame 1\nframe 2\n\n");
    QCOMPARE(_written(), QString("2009-03-05 16:07:00.000 info reason\n    2009 frame 1\n    frame 2\n"));
}

void tst_QWApplicationLog::formatIsFilled_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    QTest::newRow("filled") << "%@ of %d" << QStringList{"%d", "3"} << "%d of 3";
    QTest::newRow("finished text") << "100%% of %@" << QStringList() << "100%% of %@";
}

void tst_QWApplicationLog::formatIsFilled()
{
    QFETCH(QString, format);
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);
    QWApplicationLog::sharedLog().logContextFormatArguments(QWApplicationLog::Notice, nullptr, format, arguments);
    QCOMPARE(_written(), "2009-03-05 16:07:00.000 notice " + expected + '\n');
}

void tst_QWApplicationLog::debugIsNotWritten()
{
    QWApplicationLog::sharedLog().debugMessage({}, "a");
    QVERIFY(!m_system->readFile(logFile));
}

void tst_QWApplicationLog::entriesAreAppendedAcrossRuns()
{
    m_system->writeFile(logFile, "earlier\n");
    QWApplicationLog::sharedLog().infoMessage({}, "a");
    m_system->release<QWApplicationLog>();
    QWApplicationLog::sharedLog().infoMessage({}, "b");
    QCOMPARE(_written(), QString("earlier\n2009-03-05 16:07:00.000 info a\n2009-03-05 16:07:00.000 info b\n"));
}

void tst_QWApplicationLog::removedFileIsMadeAnew()
{
    QWApplicationLog::sharedLog().infoMessage({}, "a");
    QVERIFY(QFile::remove(m_system->real(logFile)));
    QWApplicationLog::sharedLog().infoMessage({}, "b");
    QCOMPARE(_written(), QString("2009-03-05 16:07:00.000 info b\n"));
}

void tst_QWApplicationLog::fileThatCannotBeWrittenIsNoFailure()
{
    m_system->writeFile("~/Library/Logs", "a file where the folder should be");
    QWApplicationLog::sharedLog().infoMessage({}, "a");
    QVERIFY(QFile::remove(m_system->real("~/Library/Logs")));
    QWApplicationLog::sharedLog().infoMessage({}, "b");
    QCOMPARE(_written(), QString("2009-03-05 16:07:00.000 info b\n"));
}

void tst_QWApplicationLog::entriesOfManyThreadsStayWhole()
{
    auto &log = QWApplicationLog::sharedLog();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&log, t] {
            for (int i = 0; i < 250; ++i)
                log.infoMessage({"worker"}, QString(200, QChar('a' + t)));
        });
    for (std::thread &thread : threads)
        thread.join();
    static const QRegularExpression entry("^2009-03-05 16:07:00.000 info \\[worker\\] (a{200}|b{200}|c{200}|d{200})$");
    const QStringList lines = _written().split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 1000);
    QCOMPARE(lines.filter(entry).size(), 1000);
}

void tst_QWApplicationLog::openingShowsTheFileAndMakesIt()
{
    QWApplicationLog::sharedLog().openLogFile();
    QCOMPARE(m_system->workspace.openedFiles, QStringList(m_system->real(logFile)));
    QCOMPARE(m_system->readFile(logFile), QByteArray());
}

void tst_QWApplicationLog::fileIsNamedAfterTheApplication()
{
    QCOMPARE(QWApplicationLog::sharedLog().path(), m_system->real(logFile));
}

QW_TEST_MAIN(tst_QWApplicationLog)
#include "tst_QWApplicationLog.moc"
