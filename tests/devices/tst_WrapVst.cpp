#include "PluginDisk.h"

#include <ElfExports.h>
#include <VstLibraryFinder.h>
#include <VstWrappers.h>

#include <QWPlatform/foundation/PropertyList.h>

#include <fcntl.h>
#include <sys/stat.h>

using platform::PropertyList::dictionaryFromFile;

namespace
{
/// A folder with bare libraries and a VST folder.
class Folders
{
public:
    QString libraries() const { return m_folder.filePath("lib"); }
    QString bundles() const { return m_folder.filePath("VST"); }
    QString bundle(const QString &name) const { return bundles() + '/' + name; }

    /// Puts the test plug-in @p plugin at @p name.
    QString addLibrary(const QString &name, const QString &plugin = "Good") const
    {
        const QString path = libraries() + '/' + name;
        QDir().mkpath(QFileInfo(path).path());
        QFile::copy(QW_TEST_PLUGINS "/VST/" + plugin + ".vst/Contents/x86_64-linux/" + plugin + ".so", path);
        return path;
    }

    VstWrappers::Summary update(VstWrappers::Mode mode = VstWrappers::Mode::Change) const
    {
        return VstWrappers(bundles(), mode).update(VstLibraryFinder::candidates({libraries()}));
    }

    QStringList bundleNames() const
    {
        return QDir(bundles()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                         QDir::Name);
    }

private:
    QTemporaryDir m_folder;
};

qint64 modified(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0
               ? status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec
               : 0;
}

void setModified(const QString &path, qint64 seconds)
{
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}
} // namespace

class tst_WrapVst : public QObject
{
    Q_OBJECT

private slots:
    void librariesBecomeBundles()
    {
        const Folders folders;
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
        const Folders folders;
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
        const Folders folders;
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
        const Folders folders;
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
        const Folders folders;
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
        const Folders folders;
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
        const Folders folders;
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
        const Folders folders;
        folders.addLibrary("a/Echo.so");
        const QString other = folders.addLibrary("b/Echo.so");
        QVERIFY(QFile::link(other, folders.libraries() + "/c.so"));
        QCOMPARE(folders.update().added.size(), 2);
        QCOMPARE(folders.bundleNames(), (QStringList{"Echo 2.vst", "Echo.vst"}));
    }

    void dryRunChangesNothing()
    {
        const Folders folders;
        folders.addLibrary("a/Echo.so");
        folders.addLibrary("b/Echo.so");
        QCOMPARE(folders.update(VstWrappers::Mode::DryRun).added,
                 (QStringList{folders.bundle("Echo.vst"), folders.bundle("Echo 2.vst")}));
        QVERIFY(!QFile::exists(folders.bundles()));
    }

    void libraryCutOffAnywhereIsNotLoadedAndDoesNoHarm()
    {
        const Folders folders;
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

    void programTellsWhatItDid()
    {
        const Folders folders;
        folders.addLibrary("Echo.so");
        const PluginDisk disk;
        const auto first = disk.run(QW_WRAP_VST, {"--folder", folders.libraries()});
        QCOMPARE(first.status, 0);
        QVERIFY(first.output.contains("Echo.vst\n1 added, 0 updated, 0 removed, 0 unchanged, 0 failed\n"));
        QVERIFY(QFile::exists(disk.home() + "/Library/Audio/Plug-Ins/VST/Echo.vst/Contents/Info.plist"));
        const auto second = disk.run(QW_WRAP_VST, {"--quiet", "--folder", folders.libraries()});
        QCOMPARE(second.output, QByteArray("0 added, 0 updated, 0 removed, 1 unchanged, 0 failed\n"));
        QVERIFY(disk.run(QW_WRAP_VST, {"--help"}).output.contains("--dry-run"));
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

QTEST_GUILESS_MAIN(tst_WrapVst)
#include "tst_WrapVst.moc"
