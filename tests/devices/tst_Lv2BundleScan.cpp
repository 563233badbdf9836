#include "audio-plugins/PluginDisk.h"

#include <QWPlatform/foundation/processes/ChildProcesses.h>
#include <QWPlatform/linux/lv2/Lv2Reply.h>
#include <QWPlatform/linux/plugins/Lv2BundleScan.h>
#include <QWPlatform/machine/SystemServices.h>

#include <csignal>
#include <functional>
#include <sys/stat.h>

namespace Lv2BundleScan = platform::Lv2BundleScan;
namespace Lv2Reply = platform::Lv2Reply;

namespace
{
/// A reader whose deaths are scripted. Each bundle that it survives holds one plug-in, named like it.
class ScriptedReader : public platform::ChildProcesses
{
public:
    std::function<bool(const QString &bundle, qsizetype readBefore)> dies = [](auto &&...) { return false; };
    int signal = SIGSEGV;
    bool isThere = true;
    QList<QStringList> runs; ///< The bundles of each.

    platform::ChildProcessResult run(const platform::ChildProcessRequest &request) override
    {
        runs += request.arguments.mid(platform::Lv2ReaderLimits::argumentCount);
        platform::ChildProcessResult result;
        result.started = isThere;
        result.output = isThere ? Lv2Reply::greeting() : QByteArray();
        for (qsizetype i = 0; isThere && i < runs.last().size(); ++i) {
            const QString &bundle = runs.last()[i];
            const QByteArray answer = Lv2Reply::answer({{{"urn:" + bundle, bundle, "", 1}}, ""});
            if (dies(bundle, i)) {
                result.output += answer.first(answer.size() / 2);
                result.status = signal;
                return result;
            }
            result.output += answer;
        }
        result.exited = isThere;
        result.status = 0;
        return result;
    }

    void endAll() override { isThere = false; }
};

/// The names found in each bundle: "-" for none, "?" for one that nobody could ask about.
QStringList found(platform::ChildProcesses &processes, const QStringList &bundles,
                  const platform::Lv2ReaderLimits &limits = {})
{
    QStringList names;
    for (const auto &plugins : Lv2BundleScan::read(processes, bundles, limits))
        names += !plugins ? "?" : plugins->empty() ? "-" : plugins->front().name;
    return names;
}
} // namespace

class tst_Lv2BundleScan : public QObject
{
    Q_OBJECT

private slots:
    void oneReaderReadsAllBundles()
    {
        ScriptedReader reader;
        QStringList bundles;
        for (int i = 0; i < 150; ++i)
            bundles += QString::number(i);
        QCOMPARE(found(reader, bundles), bundles);
        QCOMPARE(reader.runs.size(), 1);
        QVERIFY(found(reader, {}).isEmpty());
    }

    void bundleThatEndsItsReaderCostsNoOther()
    {
        ScriptedReader reader;
        reader.dies = [](const QString &bundle, qsizetype) { return bundle == "b" || bundle == "d"; };
        QTest::ignoreMessage(QtWarningMsg, "The LV2 bundle \"b\" cannot be read (Segmentation fault). Its plug-ins are "
                                           "left out until it changes.");
        QTest::ignoreMessage(QtWarningMsg, "The LV2 bundle \"d\" cannot be read (Segmentation fault). Its plug-ins are "
                                           "left out until it changes.");
        QCOMPARE(found(reader, {"a", "b", "c", "d", "e"}), QStringList({"a", "-", "c", "-", "e"}));
    }

    void bundleThatOthersSpoilIsReadByItself()
    {
        ScriptedReader reader;
        reader.dies = [](const QString &bundle, qsizetype readBefore) { return bundle == "c" && readBefore > 0; };
        QCOMPARE(found(reader, {"a", "b", "c", "d"}), QStringList({"a", "b", "c", "d"}));
        QCOMPARE(reader.runs, (QList<QStringList>{{"a", "b", "c", "d"}, {"c"}, {"d"}}));
    }

    void readerThatOthersEndedIsTakenForNoBundlesFault()
    {
        ScriptedReader reader;
        reader.signal = SIGKILL;
        reader.dies = [&](auto &&...) { return reader.runs.size() == 1; }; // with the first bundle, too
        QCOMPARE(found(reader, {"a", "b"}), QStringList({"a", "b"}));
        QCOMPARE(reader.runs, (QList<QStringList>{{"a", "b"}, {"a"}, {"b"}}));
    }

    void bundleThatTakesForEverIsNotWaitedForTwice()
    {
        ScriptedReader reader;
        reader.signal = SIGPROF;
        reader.dies = [](const QString &bundle, qsizetype) { return bundle == "b"; };
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("\"b\" cannot be read"));
        QCOMPARE(found(reader, {"a", "b", "c"}), QStringList({"a", "-", "c"}));
        QCOMPARE(reader.runs, (QList<QStringList>{{"a", "b", "c"}, {"c"}}));
    }

    void withoutAReaderNothingIsKnown()
    {
        ScriptedReader reader;
        reader.isThere = false;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be read: .*qw-lv2-reader\" does not run"));
        QCOMPARE(found(reader, {"a", "b"}), QStringList({"?", "?"}));
    }

    void bundleThatStandsStillIsGivenUp()
    {
        const PluginDisk disk;
        auto &processes = *platform::SystemServices::current().childProcesses;
        const QString bundle = disk.installLv2("Instrument");
        QVERIFY(QFile::remove(bundle + "/plugin.ttl"));
        QCOMPARE(::mkfifo(QFile::encodeName(bundle + "/plugin.ttl").constData(), 0600), 0); // nobody writes
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be read \\(Alarm clock\\)"));
        QCOMPARE(found(processes, {bundle, disk.installLv2("Good")}, {.patienceSeconds = 1}),
                 QStringList({"-", "Test Good"}));
    }
};

QTEST_GUILESS_MAIN(tst_Lv2BundleScan)
#include "tst_Lv2BundleScan.moc"
