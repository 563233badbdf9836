#include "Curl.h"

#include <QWPlatform/foundation/PropertyList.h>
#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace platform;

Q_DECLARE_METATYPE(std::function<bool(const Curl &)>)
Q_DECLARE_METATYPE(std::function<bool(const QVariantList &)>)

namespace
{
using Told = std::function<bool(const Curl &)>;
using Listed = std::function<bool(const QVariantList &)>;

QByteArray lengthTold(const Curl &curl)
{
    const qsizetype at = curl.head.indexOf("Content-Length: ");
    return at < 0 ? "none" : curl.head.mid(at + 16, curl.head.indexOf('\r', at) - at - 16);
}

bool everyTitle(const QVariantList &list, const std::function<bool(const QString &)> &holds)
{
    return std::ranges::all_of(list, [&](const QVariant &entry) { return holds(entry.toMap()["title"].toString()); });
}

bool anyEntry(const QVariantList &list, const std::function<bool(const QVariantMap &)> &holds)
{
    return std::ranges::any_of(list, [&](const QVariant &entry) { return holds(entry.toMap()); });
}
} // namespace

class tst_RecorderFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void answersAreAsBadAsTold_data();
    void answersAreAsBadAsTold();
    void listsAnswerAsBadlyAsDownloads();
    void listsAreAsBadAsTold_data();
    void listsAreAsBadAsTold();
    void textsAreAsBadAsTold_data();
    void textsAreAsBadAsTold();
    void endlessListGoesOn();
    void endlessListHasOtherFaultsToo();
    void faultsComeTogether();
    void oneDownloadMayBeFaulty();
    void unknownFaultsAreRefused_data();
    void unknownFaultsAreRefused();
    void helpNamesEachFault();
    void leavesInTheMiddleOfADownload();

private:
    Curl _download(const QStringList &further = {}) const
    {
        return Curl::fetched(m_recorder->address() + "/download?filename=take-000001&format=wav", further);
    }
    Curl _list(const QStringList &further = {}) const
    {
        return Curl::fetched(m_recorder->address() + "/list.plist", further);
    }

    std::unique_ptr<RecorderSimulator> m_recorder;
    qint64 m_size = 0; ///< Of the download.
};

void tst_RecorderFaults::init()
{
    m_recorder = std::make_unique<RecorderSimulator>(QString());
    m_recorder->setTakes(MadeUpTakes::takes({.count = 22, .length = 1}));
    m_size = m_recorder->takes().front().fileSize;
    QVERIFY(m_recorder->listen());
}

void tst_RecorderFaults::answersAreAsBadAsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<Told>("isAsTold");
    const auto row = [](const char *fault, const Told &isAsTold, const QStringList &arguments = {}) {
        QTest::newRow(fault) << arguments << isAsTold;
    };
    const auto is = [](int exitCode, int status) {
        return [=](const Curl &curl) { return curl.exitCode == exitCode && curl.status == status; };
    };
    const QStringList patience{"--max-time", "1"};
    row("slow", [this](const Curl &curl) { return curl.body.size() == m_size; });
    row("slow=10", is(28, 200), patience);
    row("late=20", is(0, 200));
    row("late=60000", is(28, 0), patience);
    row("silent", is(28, 0), patience);
    row(
        "stalled", [this](const Curl &curl) { return curl.exitCode == 28 && curl.body.size() == m_size / 2; },
        patience);
    row(
        "stalled=0", [](const Curl &curl) { return curl.exitCode == 28 && curl.body.isEmpty(); }, patience);
    row("cut", [this](const Curl &curl) { return curl.exitCode == 18 && curl.body.size() == m_size / 2; });
    row("cut=100", [](const Curl &curl) { return curl.exitCode == 18 && curl.body.size() == 100; });
    row("longer", [this](const Curl &curl) { return lengthTold(curl) == QByteArray::number(m_size - m_size / 2); });
    row("longer=1", [this](const Curl &curl) { return lengthTold(curl) == QByteArray::number(m_size - 1); });
    row("shorter", [this](const Curl &curl) {
        return curl.exitCode == 18 && curl.body.size() == m_size &&
               lengthTold(curl) == QByteArray::number(m_size + 1000);
    });
    row("no-length", [this](const Curl &curl) { return lengthTold(curl) == "none" && curl.body.size() == m_size; });
    row("no-ranges", is(0, 200), {"--range", "10-"});
    row("empty", [](const Curl &curl) { return lengthTold(curl) == "0" && curl.body.isEmpty(); });
    row("status", is(0, 404));
    row("status=503", is(0, 503));
    row("ring", is(47, 302), {"--location", "--max-redirs", "7"});
    row("noise", [](const Curl &curl) { return curl.exitCode != 0 && curl.status == 0; });
}

void tst_RecorderFaults::answersAreAsBadAsTold()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const Told, isAsTold);
    const auto fault = AnswerFault::named(QTest::currentDataTag());
    QVERIFY(fault);
    m_recorder->addDownloadFault(*fault);
    const Curl curl = _download(arguments);
    QVERIFY2(isAsTold(curl),
             qPrintable(QString("%1 %2 %3\n").arg(curl.exitCode).arg(curl.status).arg(curl.body.size()) + curl.head));
    QCOMPARE(_list().status, 200); // that is another answer
    m_recorder->clearFaults();
    QCOMPARE(_download().body.size(), m_size);
}

void tst_RecorderFaults::listsAnswerAsBadlyAsDownloads()
{
    for (const auto &[name, exitCode, status] :
         {std::tuple("cut=10", 18, 200), {"status=500", 0, 500}, {"ring", 0, 302}}) {
        m_recorder->clearFaults();
        m_recorder->addListFault(*AnswerFault::named(name));
        for (int turn = 0; turn < 2; ++turn) { // when it is written, and when it is kept
            const Curl curl = _list();
            QCOMPARE(curl.exitCode, exitCode);
            QCOMPARE(curl.status, status);
        }
    }
}

void tst_RecorderFaults::listsAreAsBadAsTold_data()
{
    QTest::addColumn<Listed>("isAsTold");
    const auto row = [](const char *fault, const Listed &isAsTold) { QTest::newRow(fault) << isAsTold; };
    row("no-dictionaries", [](const QVariantList &list) {
        return std::ranges::count_if(list, [](const QVariant &e) { return e.typeId() == QMetaType::QVariantMap; }) ==
               11;
    });
    row("missing-keys", [](const QVariantList &list) {
        QSet<QString> missing;
        for (const QVariant &entry : list)
            for (const QString &key : RecorderTake().listEntry().keys())
                if (!entry.toMap().contains(key))
                    missing += key;
        return missing.size() == 11 && list.first().toMap().size() == 10;
    });
    row("wrong-types", [](const QVariantList &list) {
        QSet<int> types;
        for (const QVariant &entry : list)
            types += entry.toMap()["title"].typeId();
        return types == QSet<int>{QMetaType::QString, QMetaType::QDateTime, QMetaType::LongLong,
                                  QMetaType::Double,  QMetaType::Bool,      QMetaType::QVariantList};
    });
    row("odd-filenames", [](const QVariantList &list) {
        return anyEntry(list, [](const QVariantMap &entry) { return entry["filename"] == QString("\u00fc"); });
    });
    row("titles-empty", [](const QVariantList &list) {
        return everyTitle(list, [](const QString &title) { return title.isEmpty(); });
    });
    row("titles-long", [](const QVariantList &list) {
        return everyTitle(list, [](const QString &title) { return title.size() == 1000; });
    });
    row("titles-markup", [](const QVariantList &list) {
        return everyTitle(list, [](const QString &title) { return title.contains("<b>") && title.contains("&amp;"); });
    });
    row("titles-paths", [](const QVariantList &list) {
        return anyEntry(list, [](const QVariantMap &entry) { return entry["title"] == QString("../up"); }) &&
               anyEntry(list, [](const QVariantMap &entry) { return entry["title"] == QString("Album/Song"); });
    });
    row("titles-same", [](const QVariantList &list) {
        return everyTitle(list, [](const QString &title) { return title == u"Take"; });
    });
}

void tst_RecorderFaults::listsAreAsBadAsTold()
{
    QFETCH(const Listed, isAsTold);
    const auto fault = ListFault::named(QTest::currentDataTag());
    QVERIFY(fault);
    for (const bool isBinary : {false, true}) {
        m_recorder->setList({.isBlue = false, .isBinary = isBinary, .faults = {*fault}});
        const auto list = PropertyList::fromData(_list().body);
        QVERIFY(list);
        QCOMPARE(list->toList().size(), 22);
        QVERIFY(isAsTold(list->toList()));
    }
}

void tst_RecorderFaults::textsAreAsBadAsTold_data()
{
    QTest::addColumn<Told>("isAsTold");
    const auto row = [](const char *fault, const Told &isAsTold) { QTest::newRow(fault) << isAsTold; };
    row("garbage", [](const Curl &curl) { return !PropertyList::fromData(curl.body); });
    row("truncated", [](const Curl &curl) { return curl.exitCode == 0 && curl.body.size() == 1000; });
    row("truncated=7", [](const Curl &curl) { return curl.body == "<?xml v"; });
    row("no-array", [](const Curl &curl) {
        return PropertyList::fromData(curl.body).value_or(QVariant()).typeId() == QMetaType::QVariantMap;
    });
    row("odd-numbers", [](const Curl &curl) {
        return curl.body.contains("<real>nan</real>") && curl.body.contains("<real>inf</real>") &&
               curl.body.contains("<real>-inf</real>") && curl.body.contains("<integer>-1</integer>");
    });
}

void tst_RecorderFaults::textsAreAsBadAsTold()
{
    QFETCH(const Told, isAsTold);
    const auto fault = ListFault::named(QTest::currentDataTag());
    QVERIFY(fault);
    m_recorder->setList({.isBlue = false, .isBinary = false, .faults = {*fault}});
    QVERIFY(isAsTold(_list()));
}

void tst_RecorderFaults::endlessListGoesOn()
{
    m_recorder->setList({.isBlue = false, .isBinary = false, .faults = {*ListFault::named("endless")}});
    const Curl curl = _list({"--max-time", "2"});
    QCOMPARE(curl.exitCode, 28);
    const QByteArray entry = "<string>take-000022</string>";
    QVERIFY(curl.body.count(entry) > 10);
    // What came is a list that was only never closed.
    const QByteArray entries = curl.body.left(curl.body.lastIndexOf("<dict>"));
    QVERIFY(PropertyList::fromData(entries + "</array></plist>"));
}

void tst_RecorderFaults::endlessListHasOtherFaultsToo()
{
    m_recorder->setList({.isBlue = false, .isBinary = false, .faults = {*ListFault::named("endless")}});
    m_recorder->addListFault(*AnswerFault::named("cut=5000"));
    QCOMPARE(_list().body.size(), 5000);
    m_recorder->addListFault(*AnswerFault::named("status=503"));
    QCOMPARE(_list().status, 503);
}

void tst_RecorderFaults::faultsComeTogether()
{
    m_recorder->setList({.isBlue = false,
                         .isBinary = false,
                         .faults = {*ListFault::named("titles-empty"), *ListFault::named("no-dictionaries")}});
    m_recorder->addListFault(*AnswerFault::named("no-length"));
    const Curl curl = _list();
    QCOMPARE(lengthTold(curl), QByteArray("none"));
    const QVariantList list = PropertyList::fromData(curl.body).value_or(QVariant()).toList();
    QCOMPARE(list.first().toString(), QString("text"));
    QCOMPARE(list.last().toMap()["title"].toString(), QString());
}

void tst_RecorderFaults::oneDownloadMayBeFaulty()
{
    m_recorder->addDownloadFault(*AnswerFault::named("cut"), 2);
    QCOMPARE(_download().exitCode, 0);
    QCOMPARE(_download().exitCode, 18);
    QCOMPARE(_download().exitCode, 0);
    QCOMPARE(m_recorder->downloads(), 3);
}

void tst_RecorderFaults::unknownFaultsAreRefused_data()
{
    QTest::addColumn<bool>("isOfLists");
    for (const char *const name :
         {"", "none", "Cut", "cut=", "cut=-1", "cut=x", "cut=1=2", "cut 1", "silent=1", "cut=99999999999999999999"})
        QTest::addRow("answer: %s", name) << false;
    for (const char *const name : {"", "cut", "Garbage", "garbage=1", "truncated=", "truncated=-1"})
        QTest::addRow("list: %s", name) << true;
}

void tst_RecorderFaults::unknownFaultsAreRefused()
{
    QFETCH(const bool, isOfLists);
    const QString tag = QTest::currentDataTag();
    const QString name = tag.mid(tag.indexOf(": ") + 2);
    QVERIFY(isOfLists ? !ListFault::named(name) : !AnswerFault::named(name));
}

void tst_RecorderFaults::helpNamesEachFault()
{
    for (const QString &line : AnswerFault::help().split('\n', Qt::SkipEmptyParts))
        QVERIFY2(AnswerFault::named(line.trimmed().section(u' ', 0, 0).section(u'[', 0, 0)), qPrintable(line));
    for (const QString &line : ListFault::help().split('\n', Qt::SkipEmptyParts))
        QVERIFY2(ListFault::named(line.trimmed().section(u' ', 0, 0).section(u'[', 0, 0)), qPrintable(line));
}

void tst_RecorderFaults::leavesInTheMiddleOfADownload()
{
    m_recorder->setLeavesAtDownload(2);
    bool hasLeft = false;
    connect(m_recorder.get(), &RecorderSimulator::left, this, [&hasLeft] { hasLeft = true; });
    QCOMPARE(_download().exitCode, 0);
    QVERIFY(!hasLeft);
    const QString address = m_recorder->address();
    const Curl curl = _download();
    QVERIFY(curl.exitCode == 18 || curl.exitCode == 56); // ended or reset
    QVERIFY(curl.body.size() <= m_size / 2);
    QVERIFY(hasLeft);
    QCOMPARE(Curl::fetched(address + "/list.plist").exitCode, 7); // nobody there
}

QTEST_GUILESS_MAIN(tst_RecorderFaults)
#include "tst_RecorderFaults.moc"
