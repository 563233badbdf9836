#include "VstFolders.h"
#include "audio-plugins/PluginDisk.h"

#include <ElfExports.h>

#include <QWPlatform/foundation/PropertyList.h>

using platform::PropertyList::dictionaryFromFile;

namespace
{
qint64 modified(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0
               ? status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec
               : 0;
}
} // namespace

/// Which bundles there are for which libraries.
class tst_WrapVst : public QObject
{
    Q_OBJECT

private slots:
    void librariesBecomeBundles()
    {
        const VstFolders folders;
        const QString library = folders.addLibrary("Echo-vst.so");
        folders.addLibrary("Maker/Reverb.so");
        PluginDisk::write(folders.libraries() + "/readme.so", "no library");
        folders.addLibrary("Other.so", "NoEntry");
        QCOMPARE(folders.update().added.size(), 2);
        QCOMPARE(folders.bundleNames(), (QStringList{"Echo.vst", "Reverb.vst"}));
        QCOMPARE(QFile::symLinkTarget(folders.bundle("Echo.vst/Contents/Linux/Echo-vst.so")), library);
        const auto info = dictionaryFromFile(folders.bundle("Echo.vst/Contents/Info.plist"));
        QVERIFY(info);
        QCOMPARE(info->value("CFBundleExecutable").toString(), QString("Echo-vst.so"));
        QVERIFY(info->value("CFBundleIdentifier").toString().startsWith("com.quorwell.wrapped."));
    }

    void secondRunChangesNothing()
    {
        const VstFolders folders;
        folders.addLibrary("Echo.so");
        folders.update();
        const qint64 before = modified(folders.bundle("Echo.vst"));
        const auto summary = folders.update();
        QCOMPARE(summary.unchanged, 1);
        QVERIFY(summary.added.isEmpty() && summary.updated.isEmpty() && summary.removed.isEmpty());
        QCOMPARE(modified(folders.bundle("Echo.vst")), before);
    }

    void changedLibraryChangesTheBundlesDate()
    {
        const VstFolders folders;
        const QString library = folders.addLibrary("Echo.so");
        folders.update();
        setModified(folders.bundle("Echo.vst"), 1000);
        setModified(library, 2000);
        QCOMPARE(folders.update().updated, QStringList{folders.bundle("Echo.vst")});
        QVERIFY(modified(folders.bundle("Echo.vst")) != 1'000'000'000'000);
        QCOMPARE(folders.update().unchanged, 1);
    }

    void bundleOfAMissingLibraryGoes()
    {
        const VstFolders folders;
        const QString gone = folders.addLibrary("Gone.so");
        const QString broken = folders.addLibrary("Broken.so");
        folders.update();
        QVERIFY(QFile::remove(gone));
        PluginDisk::write(broken, "no library any more");
        setModified(broken, 2000);
        QCOMPARE(folders.update().removed.size(), 2);
        QCOMPARE(folders.bundleNames(), QStringList());
    }

    void bundlesOfLibrariesElsewhereAreLookedAfterToo()
    {
        const VstFolders folders;
        const QString changed = folders.addLibrary("Changed.so");
        const QString gone = folders.addLibrary("Gone.so");
        folders.addLibrary("Same.so");
        folders.update();
        setModified(changed, 2000);
        QVERIFY(QFile::remove(gone));
        const QTemporaryDir elsewhere;
        VstWrappers wrappers(folders.bundles(), VstWrappers::Mode::Change);
        const auto summary = wrappers.update(VstLibraryFinder::candidates({elsewhere.path()}));
        QCOMPARE(summary.updated, QStringList{folders.bundle("Changed.vst")});
        QCOMPARE(summary.removed, QStringList{folders.bundle("Gone.vst")});
        QCOMPARE(summary.unchanged, 1);
        QCOMPARE(folders.bundleNames(), (QStringList{"Changed.vst", "Same.vst"}));
    }

    void libraryFoundUnderAnotherNameIsWrappedOnce()
    {
        const VstFolders folders;
        const QString library = folders.addLibrary("Echo.so");
        folders.update();
        const QTemporaryDir elsewhere;
        QVERIFY(QFile::link(library, elsewhere.filePath("Linked.so")));
        VstWrappers wrappers(folders.bundles(), VstWrappers::Mode::Change);
        const auto summary = wrappers.update(VstLibraryFinder::candidates({elsewhere.path()}));
        QCOMPARE(summary.removed, QStringList{folders.bundle("Echo.vst")});
        QCOMPARE(folders.bundleNames(), QStringList{"Linked.vst"});
    }

    void othersBundlesAreNeverTouched()
    {
        const VstFolders folders;
        PluginDisk::write(folders.bundle("Echo.vst/Contents/Info.plist"), "<plist version=\"1.0\"><dict/></plist>");
        PluginDisk::write(folders.bundle("Bare.vst/x"), "x");
        QVERIFY(QFile::link("/nowhere", folders.bundle("Echo 2.vst")));
        folders.addLibrary("Echo.so");
        QCOMPARE(folders.update().added, QStringList{folders.bundle("Echo 3.vst")});
        QCOMPARE(folders.update().unchanged, 1);
        QVERIFY(QDir(folders.libraries()).removeRecursively());
        QCOMPARE(folders.update().removed, QStringList{folders.bundle("Echo 3.vst")});
        QCOMPARE(folders.bundleNames(), (QStringList{"Bare.vst", "Echo 2.vst", "Echo.vst"}));
    }

    void sameNamesAreNumberedAndLinksCountOnce()
    {
        const VstFolders folders;
        folders.addLibrary("a/Echo.so");
        const QString other = folders.addLibrary("b/Echo.so");
        QVERIFY(QFile::link(other, folders.libraries() + "/c.so"));
        QCOMPARE(folders.update().added.size(), 2);
        QCOMPARE(folders.bundleNames(), (QStringList{"Echo 2.vst", "Echo.vst"}));
    }

    void linkedFoldersAreFollowedAndCirclesEnd()
    {
        const VstFolders folders;
        const VstFolders elsewhere;
        elsewhere.addLibrary("deep/Echo.so");
        folders.addLibrary("Reverb.so");
        QVERIFY(QFile::link(elsewhere.libraries(), folders.libraries() + "/maker.at"));
        QVERIFY(QFile::link(folders.libraries(), elsewhere.libraries() + "/back"));
        QVERIFY(QFile::link("..", elsewhere.libraries() + "/deep/up"));
        QVERIFY(QFile::link("/nowhere", folders.libraries() + "/nowhere"));
        QCOMPARE(folders.update().added.size(), 2);
        QCOMPARE(folders.bundleNames(), (QStringList{"Echo.vst", "Reverb.vst"}));
        QCOMPARE(folders.update().unchanged, 2);
    }

    void bundlesAreNamedAsTheirPluginsSay_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("bundle");
        QTest::newRow("words") << "Tape Echo 2.5"
                               << "Tape Echo 2.5.vst";
        QTest::newRow("none") << ""
                              << "libEcho.vst";
        QTest::newRow("slashes") << "L/R"
                                 << "L-R.vst";
        QTest::newRow("hidden") << "..Echo"
                                << "Echo.vst";
        QTest::newRow("lines") << "Tape\n\tEcho"
                               << "Tape Echo.vst";
        QTest::newRow("only dots") << ".."
                                   << "libEcho.vst";
        QTest::newRow("too long") << QString(300, u'é') << QString(100, u'é') + ".vst";
    }

    void bundlesAreNamedAsTheirPluginsSay()
    {
        QFETCH(QString, name);
        const VstFolders folders;
        folders.addLibrary("libEcho.so");
        QCOMPARE(folders.updateNamed(name).added.size(), 1);
        QTEST(folders.bundleNames().join(", "), "bundle");
        QCOMPARE(folders.updateNamed(name).unchanged, 1);
    }

    void bundlesOfOneNameAreNumberedAndStay()
    {
        const VstFolders folders;
        folders.addLibrary("a.so");
        const QString second = folders.addLibrary("b.so");
        folders.updateNamed("Echo");
        QCOMPARE(folders.bundleNames(), (QStringList{"Echo 2.vst", "Echo.vst"}));
        setModified(second, 2000);
        QCOMPARE(folders.updateNamed("Echo").updated, QStringList{folders.bundle("Echo 2.vst")});
    }

    void bundleWithTheFilesNameGetsThePluginsOwn()
    {
        const VstFolders folders;
        const QString library = folders.addLibrary("libEcho.so");
        folders.update();
        QCOMPARE(folders.updateNamed("Tape Echo").updated, QStringList{folders.bundle("Tape Echo.vst")});
        QCOMPARE(folders.bundleNames(), QStringList{"Tape Echo.vst"});
        QCOMPARE(folders.updateNamed("Tape Echo").unchanged, 1);
        setModified(library, 2000); // an update with another name
        folders.updateNamed("Better Echo");
        QCOMPARE(folders.bundleNames(), QStringList{"Better Echo.vst"});
    }

    void whatThereIsNoTimeForIsLeft()
    {
        const VstFolders folders;
        const QString changed = folders.addLibrary("a.so");
        folders.update();
        setModified(changed, 2000);
        folders.addLibrary("b.so");
        folders.addLibrary("c.so");
        const auto updateInNoTime = [&] {
            VstWrappers wrappers(folders.bundles(), VstWrappers::Mode::Change);
            wrappers.setTimeLimit([] { return true; });
            return wrappers.update(VstLibraryFinder::candidates({folders.libraries()}));
        };
        QCOMPARE(updateInNoTime().left, 2);
        QCOMPARE(updateInNoTime().left, 1);
        setModified(changed, 3000);
        QCOMPARE(updateInNoTime().left, 1);
        QCOMPARE(updateInNoTime().left, 0);
        QCOMPARE(folders.bundleNames(), (QStringList{"a.vst", "b.vst", "c.vst"}));
    }

    void whatAnEndedRunLeftBehindIsRemoved()
    {
        const VstFolders folders;
        PluginDisk::write(folders.bundle(".wrapping-abcdef/made/Contents/Info.plist"), "x");
        folders.addLibrary("Echo.so");
        folders.update();
        QCOMPARE(folders.bundleNames(), QStringList{"Echo.vst"});
    }

    void dryRunChangesNothing()
    {
        const VstFolders folders;
        folders.addLibrary("a/Echo.so");
        folders.addLibrary("b/Echo.so");
        QCOMPARE(folders.update(VstWrappers::Mode::DryRun).added,
                 (QStringList{folders.bundle("Echo.vst"), folders.bundle("Echo 2.vst")}));
        QVERIFY(!QFile::exists(folders.bundles()));
    }

    void libraryCutOffAnywhereIsNotLoadedAndDoesNoHarm()
    {
        const VstFolders folders;
        const QString path = folders.addLibrary("Echo.so");
        QVERIFY(exportsOneOf(path, {"VSTPluginMain"}));
        QVERIFY(!exportsOneOf(path, {"VSTPluginMai"}));
        QFile file(path);
        for (qint64 size = file.size(); size > 0; size -= 97) {
            QVERIFY(file.resize(size));
            exportsOneOf(path, {"VSTPluginMain"});
        }
        QVERIFY(!exportsOneOf(path, {"VSTPluginMain"}));
        QVERIFY(!exportsOneOf("/nowhere", {"VSTPluginMain"}));
    }
};

QTEST_GUILESS_MAIN(tst_WrapVst)
#include "tst_WrapVst.moc"
