#include "PlayedRecorderTest.h"

#include <fakes/QWTestMain.h>

#include <QProcess>

using platform::FilePanels;

namespace
{
/// A recorder whose list has one fault.
std::unique_ptr<RecorderSimulator> playedWith(const QString &fault)
{
    auto recorder = std::make_unique<RecorderSimulator>(QString());
    recorder->setTakes(MadeUpTakes::takes({.count = 6, .length = 0.5}));
    if (const auto ofAnswer = AnswerFault::named(fault))
        recorder->addListFault(*ofAnswer);
    else
        recorder->setList({.isBlue = false, .isBinary = false, .faults = {*ListFault::named(fault)}});
    return recorder;
}

enum class Outcome
{
    Saved,  ///< The file is there as the recorder has it.
    Short,  ///< The file is there, as long as the recorder told.
    Empty,  ///< The file is there and has no byte.
    Failed, ///< The sheet says so and waits; no file is there.
    Silent, ///< Nothing happens until the user has enough; no file is there.
};
} // namespace

Q_DECLARE_METATYPE(Outcome)

/// Recorders that go, answer badly, or tell of their takes what is no good.
class tst_RecorderEndToEndFaults : public PlayedRecorderTest
{
    Q_OBJECT

private Q_SLOTS:
    void recorderSwitchedOffMidway();
    void downloadsWithFaults_data();
    void downloadsWithFaults();
    void recordersWithoutAListLeave();
    void recorderWhoseListNeverEndsLeaves();
    void listsWithFaults_data();
    void listsWithFaults();
    void titlesWithPathsStayBelowTheFolder();
    void fileNamesThatNoUrlAllowsAreNotAskedFor();
    void oneTitleTwiceGetsTwoNames();
};

void tst_RecorderEndToEndFaults::recorderSwitchedOffMidway()
{
    m_recorder->setTakes(MadeUpTakes::takes({.count = 6, .length = 20}));
    m_recorder->setLeavesAtDownload(2);
    _open(6);
    QVERIFY(_save(0, 2, "WAVE"));
    QVERIFY(m_user.fails());
    QCOMPARE(_entries(), QStringList(m_recorder->takes().front().title + ".wav"));
    QCOMPARE(QFileInfo(_pathOf(0, "wav")).size(), m_recorder->takes().front().fileSize);
    m_user.escape();
    QVERIFY(m_user.hasEnded());
    QVERIFY(m_user.window()->isVisible());
    QCOMPARE(_entries().size(), 1);
}

void tst_RecorderEndToEndFaults::downloadsWithFaults_data()
{
    QTest::addColumn<QStringList>("faults");
    QTest::addColumn<int>("faulty");
    QTest::addColumn<Outcome>("outcome");
    const auto row = [](const QStringList &faults, Outcome outcome, int faulty = 0) {
        const QString name = faults.join(" and ") + (faulty ? ", once" : "");
        QTest::newRow(qPrintable(name)) << faults << faulty << outcome;
    };
    row({"slow"}, Outcome::Saved);
    row({"late=50"}, Outcome::Saved);
    row({"no-length"}, Outcome::Saved);
    row({"no-ranges"}, Outcome::Saved);
    row({"cut"}, Outcome::Saved, 1); // continued
    row({"shorter"}, Outcome::Failed);
    row({"cut", "no-ranges"}, Outcome::Failed);
    row({"cut=0", "no-ranges"}, Outcome::Failed);
    row({"longer=100"}, Outcome::Short);
    row({"empty"}, Outcome::Empty);
    row({"status"}, Outcome::Failed);
    row({"status=503"}, Outcome::Failed);
    row({"ring"}, Outcome::Failed);
    row({"noise"}, Outcome::Failed);
    row({"silent"}, Outcome::Silent);
    row({"stalled"}, Outcome::Silent);
    row({"stalled=0"}, Outcome::Silent);
}

void tst_RecorderEndToEndFaults::downloadsWithFaults()
{
    QFETCH(const QStringList, faults);
    QFETCH(const int, faulty);
    QFETCH(const Outcome, outcome);
    for (const QString &fault : faults)
        m_recorder->addDownloadFault(*AnswerFault::named(fault), faulty);
    _open(6);
    QVERIFY(_save(0, 0, "WAVE"));
    const QString path = _pathOf(0, "wav");
    if (outcome == Outcome::Failed)
        QVERIFY(m_user.fails());
    else if (outcome == Outcome::Silent)
        QVERIFY(m_user.until([this] { return m_recorder->downloads() == 1; }));
    else
        QVERIFY2(m_user.hasEnded(), qPrintable(m_user.failure()));
    if (m_user.isSaving()) {
        m_user.escape();
        m_user.escape(); // the first one waits for the next data
        QVERIFY(m_user.hasEnded());
    }
    m_recorder->clearFaults();
    const QByteArray whole = _fetched(m_recorder->takes().front(), "wav");
    if (outcome == Outcome::Failed || outcome == Outcome::Silent)
        QCOMPARE(_entries(), QStringList());
    else if (outcome == Outcome::Saved)
        QVERIFY(Curl::contentsOf(path) == whole);
    else
        QVERIFY(Curl::contentsOf(path) == whole.left(outcome == Outcome::Short ? whole.size() - 100 : 0));
    QVERIFY(_save(1, 1, "WAVE")); // and the next one is none the worse
    QVERIFY(m_user.hasEnded());
    QVERIFY(QFile::exists(_pathOf(1, "wav")));
}

void tst_RecorderEndToEndFaults::recordersWithoutAListLeave()
{
    std::vector<std::unique_ptr<RecorderSimulator>> recorders;
    QString services = QString("Vesk on Studio=127.0.0.1:%1").arg(m_recorder->port());
    for (const char *const fault : {"garbage", "truncated", "truncated=0", "no-array", "cut", "cut=0", "empty",
                                    "status", "status=500", "ring", "noise", "shorter"}) {
        recorders.push_back(playedWith(fault));
        QVERIFY(recorders.back()->listen());
        services += QString(";Vesk on %1=127.0.0.1:%2").arg(fault).arg(recorders.back()->port());
    }
    m_machine = std::make_unique<NetworkedMachine>(services);
    QWVeskBrowser::openWindow();
    // Listed as soon as one of them has answered, each leaves when its answer has come.
    const bool haveLeft = m_user.until([this] { return m_user.deviceNames() == QStringList("Studio"); });
    QVERIFY2(haveLeft, qPrintable(m_user.deviceNames().join(", ")));
    for (const auto &recorder : recorders)
        QVERIFY(!recorder->requests().empty());
    QVERIFY(m_user.listsTakes(6));
}

void tst_RecorderEndToEndFaults::recorderWhoseListNeverEndsLeaves()
{
    QProcess endless; // it has much to send, for which it needs an event loop of its own
    endless.start(QW_RECORDER_SIMULATOR, {"--no-announce", "--list-fault", "endless"});
    const auto end = qScopeGuard([&endless] { endless.terminate(), endless.waitForFinished(); });
    QVERIFY(m_user.until([&endless] { return endless.canReadLine(); }));
    const QString address = QString::fromUtf8(endless.readLine()).trimmed();
    m_machine = std::make_unique<NetworkedMachine>(QString("Vesk on Endless=%1;Vesk on Studio=127.0.0.1:%2")
                                                       .arg(address.mid(QString("http://").size()))
                                                       .arg(m_recorder->port()));
    QWVeskBrowser::openWindow();
    QVERIFY(m_user.until([this] { return m_user.deviceNames() == QStringList({"Endless", "Studio"}); }));
    QVERIFY(m_user.until([this] { return m_user.deviceNames() == QStringList("Studio"); }));
}

void tst_RecorderEndToEndFaults::listsWithFaults_data()
{
    QTest::addColumn<int>("takes");
    for (const char *const fault : {"missing-keys", "wrong-types", "odd-filenames", "titles-empty", "titles-long",
                                    "titles-markup", "titles-paths", "titles-same", "late=50", "slow=500", "no-length"})
        QTest::newRow(fault) << 6;
    QTest::newRow("no-dictionaries") << 3;
}

void tst_RecorderEndToEndFaults::listsWithFaults()
{
    QFETCH(const int, takes);
    m_recorder = playedWith(QTest::currentDataTag());
    QVERIFY(m_recorder->listen());
    _open(takes);
    QCOMPARE(m_user.deviceNames(), QStringList("Studio"));
    for (int row = 0; row < takes; ++row)
        for (int column = 0; column < m_user.takes()->model()->columnCount(); ++column)
            m_user.takes()->model()->index(row, column).data(); // whatever it is, it can be shown
    QVERIFY(!m_user.window()->grab().isNull());
}

void tst_RecorderEndToEndFaults::titlesWithPathsStayBelowTheFolder()
{
    m_recorder->setList({.isBlue = false, .isBinary = false, .faults = {*ListFault::named("titles-paths")}});
    _open(6);
    QVERIFY(QDir(m_folder->path()).mkdir("inner"));
    m_user.select(0, 0); // "../up"
    QVERIFY(m_user.chooseFormat("WAVE"));
    m_user.saveButton()->click();
    m_machine->system.filePanels.endOpen(FilePanels::OK, {_path("inner")});
    QVERIFY(m_user.fails());
    m_user.escape();
    QVERIFY(m_user.hasEnded());
    QCOMPARE(_entries(), QStringList("inner"));
    QVERIFY(_save(1, 1, "WAVE")); // "Album/Song"
    QVERIFY(m_user.hasEnded());
    QVERIFY(QFile::exists(_path("Album/Song.wav")));
}

void tst_RecorderEndToEndFaults::fileNamesThatNoUrlAllowsAreNotAskedFor()
{
    m_recorder->setList({.isBlue = false, .isBinary = false, .faults = {*ListFault::named("odd-filenames")}});
    _open(6);
    for (const int row : {0, 1, 3, 4, 5}) { // a space, a letter beyond ASCII, a quote, brackets, a percent sign
        QVERIFY(_save(row, row, "WAVE"));
        QVERIFY(m_user.fails());
        m_user.escape();
        QVERIFY(m_user.hasEnded());
    }
    QCOMPARE(m_recorder->downloads(), 0);
    QCOMPARE(_entries(), QStringList());
}

void tst_RecorderEndToEndFaults::oneTitleTwiceGetsTwoNames()
{
    m_recorder->setList({.isBlue = false, .isBinary = false, .faults = {*ListFault::named("titles-same")}});
    _open(6);
    QVERIFY(_save(0, 2, "WAVE"));
    QVERIFY(m_user.hasEnded());
    QCOMPARE(_entries().size(), 3);
    QVERIFY(_entries().contains("Take.wav"));
    QSet<qint64> sizes;
    for (const QString &name : _entries())
        sizes += QFileInfo(_path(name)).size();
    for (size_t i = 0; i < 3; ++i)
        QVERIFY(sizes.contains(m_recorder->takes()[i].fileSize));
}

QW_TEST_MAIN(tst_RecorderEndToEndFaults)
#include "tst_RecorderEndToEndFaults.moc"
