#include "BrowserDriver.h"
#include "NetworkedMachine.h"

#include <QWUtilities/recorder/QWVeskBrowser.h>
#include <fakes/QWTestMain.h>
#include <simulators/Curl.h>
#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

#include <QDir>

using namespace platform;

namespace
{
struct Choice
{
    const char *title; ///< In the format menu.
    const char *code;
    const char *extension;
};

constexpr Choice choices[] = {
    {"AIFF", "aif", "aif"},
    {"WAVE", "wav", "wav"},
    {"CAF", "caf", "caf"},
    {"AAC", "aac", "m4a"},
    {"Podcast", "podcast", "m4a"},
    {"Apple Lossless", "appleLossless", "m4a"},
    {"FLAC", "flac", "flac"},
    {"Ogg Vorbis", "vorbis", "ogg"},
    {"Metadata as XML", "metaXML", "xml"},
    {"Metadata as Text", "metaText", "txt"},
};

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

/// The window of recorders before a recorder that is played, over the loopback interface and onto a real disk.
class tst_RecorderEndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/none/such"); } // whoever else is announced
    void init();
    void cleanup();

    void formatsAreSavedAsCurlGetsThem_data();
    void formatsAreSavedAsCurlGetsThem();
    void threeTakesInThreeFormats();
    void threeTakesInThreeFormatsWithoutAMouse();
    void selectedTakesAreSavedOneAfterAnother();
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
    void filesThatAreThereStay();
    void stopLeavesNothing_data();
    void stopLeavesNothing();
    void stopAfterAnyTurnOfTheLoopLeavesWholeFilesOnly();
    void windowClosedInMidDownload();
    void reloadSeesNewTakes();

private:
    void _open(int takes);
    bool _save(int first, int last, const QString &format);
    void _press(Qt::Key key, int times = 1, Qt::KeyboardModifiers modifiers = {});
    QString _path(const QString &name) const { return m_folder->filePath(name); }
    QString _pathOf(int row, const QString &extension) const
    {
        return _path(BrowserDriver::title(row) + '.' + extension);
    }
    QByteArray _fetched(const RecorderTake &take, const QString &code) const;
    QStringList _entries() const
    {
        return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderSimulator> m_recorder;
    std::unique_ptr<NetworkedMachine> m_machine;
    BrowserDriver m_user;
};

void tst_RecorderEndToEnd::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<RecorderSimulator>();
    m_recorder->setTakes(MadeUpTakes::takes({.count = 6, .length = 0.5, .withProgram = true}));
    QVERIFY(m_recorder->listen());
}

void tst_RecorderEndToEnd::cleanup()
{
    m_machine.reset();
    m_recorder.reset();
}

/// Opens the window and waits for so many takes.
void tst_RecorderEndToEnd::_open(int takes)
{
    m_machine = std::make_unique<NetworkedMachine>(QString("Vesk on Studio=127.0.0.1:%1").arg(m_recorder->port()));
    QWVeskBrowser::openWindow();
    QVERIFY(m_user.listsTakes(takes));
}

bool tst_RecorderEndToEnd::_save(int first, int last, const QString &format)
{
    m_user.select(first, last);
    if (!m_user.chooseFormat(format))
        return false;
    m_user.saveButton()->click();
    m_machine->system.filePanels.endOpen(FilePanels::OK, {m_folder->path()});
    return m_user.isSaving();
}

QByteArray tst_RecorderEndToEnd::_fetched(const RecorderTake &take, const QString &code) const
{
    return Curl::fetched(QString("%1/download?filename=%2&format=%3").arg(m_recorder->address(), take.filename, code))
        .body;
}

void tst_RecorderEndToEnd::formatsAreSavedAsCurlGetsThem_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("extension");
    for (const Choice &choice : choices)
        QTest::newRow(choice.title) << QString(choice.code) << QString(choice.extension);
}

void tst_RecorderEndToEnd::formatsAreSavedAsCurlGetsThem()
{
    QFETCH(const QString, code);
    QFETCH(const QString, extension);
    _open(6);
    QVERIFY(_save(0, 0, QTest::currentDataTag()));
    QVERIFY(m_user.hasEnded());
    const RecorderTake &take = m_recorder->takes().front();
    QCOMPARE(_entries(), QStringList(take.title + '.' + extension));
    const QByteArray file = Curl::contentsOf(_pathOf(0, extension));
    QVERIFY(!file.isEmpty());
    QVERIFY(file == _fetched(take, code));
}

void tst_RecorderEndToEnd::threeTakesInThreeFormats()
{
    _open(6);
    for (const auto &[row, format] : {std::pair(0, "AIFF"), {1, "FLAC"}, {2, "Apple Lossless"}}) {
        QVERIFY(_save(row, row, format));
        QVERIFY(m_user.hasEnded());
    }
    const auto &takes = m_recorder->takes();
    QVERIFY(Curl::contentsOf(_path(takes[0].title + ".aif")) == _fetched(takes[0], "aif"));
    QVERIFY(Curl::contentsOf(_path(takes[1].title + ".flac")) == _fetched(takes[1], "flac"));
    QVERIFY(Curl::contentsOf(_path(takes[2].title + ".m4a")) == _fetched(takes[2], "appleLossless"));
}

/// As from the window system. The off-screen one gives the keys to nobody when a sheet goes.
void tst_RecorderEndToEnd::_press(Qt::Key key, int times, Qt::KeyboardModifiers modifiers)
{
    BrowserDriver::window()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(BrowserDriver::window()));
    for (int press = 0; press < times; ++press)
        QTest::keyClick(BrowserDriver::window()->windowHandle(), key, modifiers);
}

void tst_RecorderEndToEnd::threeTakesInThreeFormatsWithoutAMouse()
{
    _open(6);
    _press(Qt::Key_Home);
    for (const int format : {1, 6, 7}) { // WAVE, FLAC, Ogg Vorbis
        _press(Qt::Key_Tab, 4);
        QVERIFY(BrowserDriver::formats()->hasFocus());
        _press(Qt::Key_Home);
        _press(Qt::Key_Down, format);
        _press(Qt::Key_Backtab, 4, Qt::ShiftModifier);
        _press(Qt::Key_Return);
        m_machine->system.filePanels.endOpen(FilePanels::OK, {m_folder->path()});
        QVERIFY(m_user.hasEnded());
        _press(Qt::Key_Down);
    }
    const auto &takes = m_recorder->takes();
    QVERIFY(Curl::contentsOf(_path(takes[0].title + ".wav")) == _fetched(takes[0], "wav"));
    QVERIFY(Curl::contentsOf(_path(takes[1].title + ".flac")) == _fetched(takes[1], "flac"));
    QVERIFY(Curl::contentsOf(_path(takes[2].title + ".ogg")) == _fetched(takes[2], "vorbis"));
}

void tst_RecorderEndToEnd::selectedTakesAreSavedOneAfterAnother()
{
    _open(6);
    QVERIFY(_save(1, 4, "WAVE"));
    QVERIFY(m_user.hasEnded());
    QCOMPARE(_entries().size(), 4);
    QStringList asked;
    for (const HttpRequest &request : m_recorder->requests())
        if (request.path == u"/download")
            asked += request.query.queryItemValue("filename");
    QCOMPARE(asked, QStringList({"take-000002", "take-000003", "take-000004", "take-000005"}));
}

void tst_RecorderEndToEnd::recorderSwitchedOffMidway()
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

void tst_RecorderEndToEnd::downloadsWithFaults_data()
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

void tst_RecorderEndToEnd::downloadsWithFaults()
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

void tst_RecorderEndToEnd::recordersWithoutAListLeave()
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

void tst_RecorderEndToEnd::recorderWhoseListNeverEndsLeaves()
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

void tst_RecorderEndToEnd::listsWithFaults_data()
{
    QTest::addColumn<int>("takes");
    for (const char *const fault : {"missing-keys", "wrong-types", "odd-filenames", "titles-empty", "titles-long",
                                    "titles-markup", "titles-paths", "titles-same", "late=50", "slow=500", "no-length"})
        QTest::newRow(fault) << 6;
    QTest::newRow("no-dictionaries") << 3;
}

void tst_RecorderEndToEnd::listsWithFaults()
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

void tst_RecorderEndToEnd::titlesWithPathsStayBelowTheFolder()
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

void tst_RecorderEndToEnd::fileNamesThatNoUrlAllowsAreNotAskedFor()
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

void tst_RecorderEndToEnd::oneTitleTwiceGetsTwoNames()
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

void tst_RecorderEndToEnd::filesThatAreThereStay()
{
    _open(6);
    QFile old(_pathOf(0, "wav"));
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("mine") == 4);
    old.close();
    QVERIFY(_save(0, 0, "WAVE"));
    QVERIFY(m_user.hasEnded());
    QCOMPARE(Curl::contentsOf(old.fileName()), QByteArray("mine"));
    QCOMPARE(_entries().size(), 2);
}

void tst_RecorderEndToEnd::stopLeavesNothing_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("button") << false;
    QTest::newRow("Escape") << true;
}

void tst_RecorderEndToEnd::stopLeavesNothing()
{
    QFETCH(const bool, byKey);
    m_recorder->setTakes(MadeUpTakes::takes({.count = 6, .length = 60}));
    m_recorder->addDownloadFault(*AnswerFault::named("slow=100000"));
    _open(6);
    QVERIFY(_save(0, 3, "WAVE"));
    QVERIFY(m_user.hasBegunToArrive());
    if (byKey)
        m_user.escape();
    else
        m_user.stopButton()->click();
    QVERIFY(m_user.hasEnded());
    QCOMPARE(_entries(), QStringList());
    QCOMPARE(m_recorder->downloads(), 1);
}

void tst_RecorderEndToEnd::stopAfterAnyTurnOfTheLoopLeavesWholeFilesOnly()
{
    _open(6);
    for (int turns = 0; turns < 40; ++turns) {
        QVERIFY(_save(0, 2, "WAVE"));
        for (int i = 0; i < turns; ++i)
            QCoreApplication::processEvents();
        if (m_user.isSaving()) {
            m_user.escape();
            m_user.escape(); // the first one waits for the next data
        }
        QVERIFY(m_user.hasEnded());
        for (const QString &name : _entries()) {
            const auto isIt = [&](const RecorderTake &take) { return QString(take.title + ".wav") == name; };
            const auto take = std::ranges::find_if(m_recorder->takes(), isIt);
            QVERIFY2(take != m_recorder->takes().end(), qPrintable(name));
            QCOMPARE(QFileInfo(_path(name)).size(), take->fileSize);
            QVERIFY(QFile::remove(_path(name)));
        }
    }
}

void tst_RecorderEndToEnd::windowClosedInMidDownload()
{
    m_recorder->setTakes(MadeUpTakes::takes({.count = 6, .length = 60}));
    m_recorder->addDownloadFault(*AnswerFault::named("slow=100000"));
    _open(6);
    QVERIFY(_save(0, 3, "WAVE"));
    QVERIFY(m_user.hasBegunToArrive());
    m_user.window()->close();
    QVERIFY(m_user.hasEnded());
    QCOMPARE(_entries(), QStringList());
}

void tst_RecorderEndToEnd::reloadSeesNewTakes()
{
    _open(6);
    m_recorder->setTakes(MadeUpTakes::takes({.count = 9, .length = 0.5}));
    QTest::keyClick(m_user.window(), Qt::Key_R, Qt::ControlModifier);
    QVERIFY(m_user.listsTakes(9));
    QCOMPARE(m_user.deviceNames(), QStringList("Studio"));
}

QW_TEST_MAIN(tst_RecorderEndToEnd)
#include "tst_RecorderEndToEnd.moc"
