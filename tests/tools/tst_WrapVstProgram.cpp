#include "VstFolders.h"
#include "audio-plugins/PluginDisk.h"

/// The program that makes the bundles, run on plug-ins that tell their names, or do worse.
class tst_WrapVstProgram : public QObject
{
    Q_OBJECT

private slots:
    void programTellsWhatItDid()
    {
        const VstFolders folders;
        folders.addLibrary("libecho.so");
        const PluginDisk disk;
        const auto first = disk.run(QW_WRAP_VST, {"--folder", folders.libraries()});
        QCOMPARE(first.status, 0);
        QVERIFY(first.output.contains("Test Good.vst\n1 added, 0 updated, 0 removed, 0 unchanged, 0 failed\n"));
        QVERIFY(QFile::exists(disk.home() + "/Library/Audio/Plug-Ins/VST/Test Good.vst/Contents/Info.plist"));
        const auto second = disk.run(QW_WRAP_VST, {"--quiet", "--folder", folders.libraries()});
        QCOMPARE(second.output, QByteArray("0 added, 0 updated, 0 removed, 1 unchanged, 0 failed\n"));
        QVERIFY(disk.run(QW_WRAP_VST, {"--help"}).output.contains("--dry-run"));
    }

    void lockThatACrashLeftEmptyHoldsNothingUp()
    {
        const PluginDisk disk;
        const VstFolders folders;
        folders.addLibrary("Echo.so");
        const QString lock = disk.support("vst_wrappers.lock");
        PluginDisk::write(lock, "");
        setModified(lock, 1000);
        const auto run = disk.run(QW_WRAP_VST, {"--folder", folders.libraries()});
        QVERIFY2(run.status == 0, run.errors.constData());
    }

    void programStopsWhenItsTimeIsUp()
    {
        const VstFolders folders;
        folders.addLibrary("a.so");
        folders.addLibrary("b.so");
        const PluginDisk disk;
        const QStringList arguments{"--quiet", "--seconds", "0", "--folder", folders.libraries()};
        const auto first = disk.run(QW_WRAP_VST, arguments);
        QCOMPARE(first.output, QByteArray("1 added, 0 updated, 0 removed, 0 unchanged, 0 failed, 1 left\n"));
        QCOMPARE(first.status, 3);
        QCOMPARE(disk.run(QW_WRAP_VST, arguments).status, 0);
    }

    /// Each plug-in would be asked for its name in vain, while a host waits.
    void programStopsWhereNothingCanBeDone()
    {
        const VstFolders folders;
        folders.addLibrary("a.so");
        folders.addLibrary("b.so");
        const PluginDisk disk;
        PluginDisk::write(disk.home() + "/Library/Audio/Plug-Ins/VST", "no folder");
        const auto run = disk.run(QW_WRAP_VST, {"--quiet", "--seconds", "0", "--folder", folders.libraries()});
        QCOMPARE(run.output, QByteArray("0 added, 0 updated, 0 removed, 0 unchanged, 1 failed, 1 left\n"));
        QCOMPARE(run.status, 1);
    }

    void pluginThatTellsNoNameIsNamedAfterItsFile_data()
    {
        QTest::addColumn<QString>("plugin");
        for (const char *plugin : {"CrashAtLoad", "CrashAtOpen", "Exiting", "Refusing"})
            QTest::newRow(plugin) << plugin;
    }

    void pluginThatTellsNoNameIsNamedAfterItsFile()
    {
        QFETCH(QString, plugin);
        const VstFolders folders;
        folders.addLibrary("Echo-vst.so", plugin);
        const PluginDisk disk;
        const auto run = disk.run(QW_WRAP_VST, {"--folder", folders.libraries()});
        QCOMPARE(run.status, 0);
        QCOMPARE(run.errors, QByteArray());
        QVERIFY(run.output.contains("/Echo.vst\n1 added"));
    }

    void pluginThatPrintsSpoilsNoName()
    {
        const VstFolders folders;
        folders.addLibrary("Echo-vst.so", "Printing");
        const PluginDisk disk;
        QVERIFY(
            disk.run(QW_WRAP_VST, {"--folder", folders.libraries()}).output.contains("/Test Printing.vst\n1 added"));
    }

    void programRefusesWhatItDoesNotKnow_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("option") << QStringList{"--nonsense"} << QByteArray("Unknown option 'nonsense'.");
        QTest::newRow("folder without its option")
            << QStringList{"/usr/lib/vst"} << QByteArray("\"/usr/lib/vst\" is no option; folders follow --folder.");
    }

    void programRefusesWhatItDoesNotKnow()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, reason);
        const PluginDisk disk;
        const auto run = disk.run(QW_WRAP_VST, arguments);
        QCOMPARE(run.status, 1);
        QVERIFY2(run.errors.contains(reason), run.errors.constData());
        QCOMPARE(run.output, QByteArray());
        QVERIFY(!QFile::exists(disk.home() + "/Library"));
    }
};

QTEST_GUILESS_MAIN(tst_WrapVstProgram)
#include "tst_WrapVstProgram.moc"
