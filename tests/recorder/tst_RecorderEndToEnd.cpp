#include "PlayedRecorderTest.h"

#include <fakes/QWTestMain.h>

using platform::FilePanels;

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
} // namespace

/// The window of recorders before a recorder that is played, over the loopback interface and onto a real disk.
class tst_RecorderEndToEnd : public PlayedRecorderTest
{
    Q_OBJECT

private Q_SLOTS:

    void formatsAreSavedAsCurlGetsThem_data();
    void formatsAreSavedAsCurlGetsThem();
    void threeTakesInThreeFormats();
    void threeTakesInThreeFormatsWithoutAMouse();
    void selectedTakesAreSavedOneAfterAnother();
    void filesThatAreThereStay();
    void stopLeavesNothing_data();
    void stopLeavesNothing();
    void stopAfterAnyTurnOfTheLoopLeavesWholeFilesOnly();
    void windowClosedInMidDownload();
    void reloadSeesNewTakes();
};

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
