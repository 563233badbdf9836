#include "audio-plugins/PluginDisk.h"

#include <QWPlatform/foundation/PropertyList.h>

namespace
{
constexpr auto validator = QW_VST_VALIDATOR;

/// The hand-off file's dictionary; empty when there is none.
QVariantMap handOff(const PluginDisk &disk)
{
    return platform::PropertyList::dictionaryFromFile(disk.vstHandOff()).value_or(QVariantMap());
}
} // namespace

class tst_VSTValidator : public QObject
{
    Q_OBJECT

private slots:
    void goodOnesAreHandedOff_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isInstrument");
        QTest::newRow("effect") << "Good" << false;
        QTest::newRow("instrument") << "Instrument" << true;
        QTest::newRow("accumulating") << "Accumulating" << false;
        QTest::newRow("shell") << "Shell" << false;
        QTest::newRow("asking") << "Asking" << false;
        QTest::newRow("printing") << "Printing" << false;
    }

    void goodOnesAreHandedOff()
    {
        QFETCH(QString, name);
        QFETCH(bool, isInstrument);
        const PluginDisk disk;
        const QString path = disk.installVst(name);
        const auto run = disk.run(validator, {path});
        QVERIFY2(!run.crashed && run.status == 0, run.errors.constData());
        QCOMPARE(run.output, QByteArray());
        const QVariantMap state = handOff(disk);
        QCOMPARE(state.value("name").toString(), "Test " + name);
        QCOMPARE(state.value("vendor").toString(), QString("Møller & Søn \U0001F3B9"));
        QCOMPARE(state.value("isInstrument").toBool(), isInstrument);
        QCOMPARE(state.value("ignore"), QVariant(false));
        QCOMPARE(state.value("path").toString(), path);
        QVERIFY(state.contains("category") && state.contains("flags") && state.contains("uniqueID"));
    }

    void badOnesLeaveNothing_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"Refusing", "NoEntry", "CrashAtLoad", "CrashAtOpen", "CrashAtClose", "Exiting",
                                 "NotFinite", "WrongCounts"})
            QTest::newRow(name) << name;
    }

    void badOnesLeaveNothing()
    {
        QFETCH(QString, name);
        const PluginDisk disk;
        const auto run = disk.run(validator, {disk.installVst(name)});
        QVERIFY(run.crashed || run.status != 0);
        QVERIFY(!QFile::exists(disk.vstHandOff()));
        QCOMPARE(run.output, QByteArray());
    }

    void hangingOneIsGivenUp()
    {
        const PluginDisk disk;
        const auto run = disk.run(validator, {"--watchdog", "0.2", disk.installVst("Hanging")});
        QCOMPARE(run.status, 3);
        QVERIFY2(run.errors.endsWith(": The plug-in hangs (opening).\n"), run.errors.constData());
        QVERIFY(!QFile::exists(disk.vstHandOff()));
    }

    void patienceCanBeADefault()
    {
        const PluginDisk disk;
        PluginDisk::write(disk.home() + "/Library/Preferences/com.quorwell.validators.plist",
                          "<plist version=\"1.0\"><dict><key>QWValidatorWatchdog</key><real>0.2</real></dict></plist>");
        QCOMPARE(disk.run(validator, {disk.installVst("Hanging")}).status, 3);
    }

    void patienceMayBeAsLongAsAnyNumber_data()
    {
        QTest::addColumn<QString>("seconds");
        for (const char *seconds : {"1e10", "1e300"})
            QTest::newRow(seconds) << seconds;
    }

    void patienceMayBeAsLongAsAnyNumber()
    {
        QFETCH(QString, seconds);
        const PluginDisk disk;
        const auto run = disk.run(validator, {"--watchdog", seconds, disk.installVst("Good")});
        QVERIFY2(run.status == 0 && QFile::exists(disk.vstHandOff()), run.errors.constData());
    }

    void failureNamesTheBundle()
    {
        const PluginDisk disk;
        const auto run = disk.run(validator, {"/nowhere/Für X.vst"});
        QCOMPARE(run.errors, QByteArray("VST Validator: /nowhere/Für X.vst: There is no such bundle.\n"));
    }

    void libraryCutShortLeavesNothing()
    {
        const PluginDisk disk;
        const QString path = disk.installVst("Good");
        QFile library(path + "/Contents/x86_64-linux/Good.so");
        bool hasCrashed = false;
        for (qint64 size : {8192, 4096, 64, 4, 0}) { // all within what is mapped
            QVERIFY(library.resize(size));
            const auto run = disk.run(validator, {path});
            QVERIFY(run.crashed || run.status != 0);
            QVERIFY(!QFile::exists(disk.vstHandOff()));
            hasCrashed |= run.errors.contains("The plug-in crashes") || run.errors.contains("Sanitizer: BUS");
        }
        QVERIFY(hasCrashed); // the bus error that this is about
    }

    void commandLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("help") << QStringList{"--help"} << 0 << QByteArray("Usage: VST Validator");
        QTest::newRow("version") << QStringList{"--version"} << 0 << QByteArray("VST Validator 0.");
        QTest::newRow("nothing") << QStringList{} << 2 << QByteArray("VST Validator: needs PATH\nUsage:");
        QTest::newRow("too much") << QStringList{"/a", "/b"} << 2
                                  << QByteArray("VST Validator: takes PATH only\nUsage:");
        QTest::newRow("unknown") << QStringList{"--nonsense", "/a"} << 2 << QByteArray("unknown option --nonsense");
        QTest::newRow("no seconds") << QStringList{"/a", "--watchdog"} << 2 << QByteArray("needs a number");
        QTest::newRow("bad seconds") << QStringList{"--watchdog", "-1", "/a"} << 2 << QByteArray("needs a number");
        QTest::newRow("missing file") << QStringList{"/nowhere/X.vst"} << 1 << QByteArray("There is no such bundle.");
        QTest::newRow("no bundle") << QStringList{"/tmp"} << 1 << QByteArray("holds no library for this machine");
        QTest::newRow("empty path") << QStringList{""} << 1 << QByteArray("There is no such bundle.");
    }

    void commandLine()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, status);
        QFETCH(QByteArray, text);
        const PluginDisk disk;
        const auto run = disk.run(validator, arguments);
        QCOMPARE(run.status, status);
        QVERIFY2(run.errors.contains(text), run.errors.constData());
        QCOMPARE(run.output, QByteArray());
        QVERIFY(!QFile::exists(disk.vstHandOff()));
    }

    void olderHandOffStaysWhenThePluginFails()
    {
        const PluginDisk disk;
        PluginDisk::write(disk.vstHandOff(), "older");
        disk.run(validator, {disk.installVst("CrashAtOpen")});
        QFile file(disk.vstHandOff());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("older"));
    }
};

QTEST_GUILESS_MAIN(tst_VSTValidator)
#include "tst_VSTValidator.moc"
