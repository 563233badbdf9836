#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWMenuSorting.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/PropertyList.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::System;

namespace
{
/// A host's own catalog: its graylist lies in the bundle of this program.
class HostsManager : public QWVSTManager
{
};

QString ownGraylist()
{
    return platform::Bundle::forExecutable().path() + "/Contents/Resources/graylist_vst.plist";
}

void writeOwnGraylist(const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(ownGraylist()).path());
    QFile file(ownGraylist());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        qFatal("No graylist can be written");
}

QStringList pathsOf(const QWVSTManager &manager)
{
    QStringList paths;
    for (const auto &record : manager.database())
        paths.append(record->path());
    return paths;
}

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

/// Gives the file at @p path another modification date, later by @p nanoseconds.
void touch(const FakeSystem &system, const QString &path, long nanoseconds)
{
    const QByteArray real = system.real(path).toUtf8();
    struct stat status;
    QCOMPARE(::stat(real.constData(), &status), 0);
    timespec times[2] = {status.st_mtim, status.st_mtim};
    times[1].tv_nsec = (times[1].tv_nsec + nanoseconds) % 1'000'000'000;
    QCOMPARE(::utimensat(AT_FDCWD, real.constData(), times, 0), 0);
}

/// A catalog file with effects at these paths.
void writeCatalog(const FakeSystem &system, const QStringList &paths, const QVariantMap &more = {})
{
    QVariantList states;
    for (const QString &path : paths) {
        QVariantMap state = more;
        state["path"] = path;
        states.append(state);
    }
    system.writePropertyList(vstDatabase, states);
}

/// Titles with submenus in brackets: "A [B, C [D]]".
QString outline(const QMenu &menu)
{
    QStringList items;
    for (const QAction *item : menu.actions())
        items.append(item->menu() ? QString(platform::titleOf(*item) + " [" + outline(*item->menu()) + "]")
                                  : platform::titleOf(*item));
    return items.join(", ");
}

const QString systemFolder = "/Library/Audio/Plug-Ins/VST";
const QString userFolder = "~/Library/Audio/Plug-Ins/VST";
} // namespace

class tst_QWVSTManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void nothingInstalled();
    void unreadableDatabaseIsAnEmptyCatalog_data();
    void unreadableDatabaseIsAnEmptyCatalog();
    void recordsWithOddValuesAreKept();
    void walksBothFoldersAtAnyDepth();
    void onlyTheExactExtensionCounts_data();
    void onlyTheExactExtensionCounts();
    void bundlesAreNeverWalkedInto();
    void linksAreFollowedButNeverInCircles();
    void foldersThatCannotBeReadAreSkipped();
    void foldersWithoutPermissionAreSkipped();
    void bundleWithoutPermissionIsAPlugin();
    void databaseWithoutPermissionIsAnEmptyCatalogAndStays();
    void namesThatAreNoTextAreSkipped();
    void oddNamesGoAllTheWay();
    void validatorGetsTheExpandedPath();
    void recordKeepsItsTildeWhateverIsHandedOff();
    void recordIsSavedBeforeItIsTriedAndAgainAfterwards();
    void bundleThatFailsIsTriedOnceAndLeftOutOfMenus();
    void handOffsThatAreNoDictionaryCountAsSuccess_data();
    void handOffsThatAreNoDictionaryCountAsSuccess();
    void changedBundleIsTriedAgainAndMovesToTheEnd();
    void aNanosecondIsAChange();
    void vanishedBundleIsForgotten();
    void unchangedMachineWritesNothing();
    void shippedGraylistWarns();
    void graylistedBundleCanBeIgnoredOrUsed_data();
    void graylistedBundleCanBeIgnoredOrUsed();
    void oddGraylistsAreHarmless_data();
    void oddGraylistsAreHarmless();
    void skipKeyStopsValidationForGood();
    void exceptionsAreNotReportedDuringTheScan();
    void scanGoesOnAfterOneThatAnExceptionEnded();
    void menuMirrorsTheFolders_data();
    void menuMirrorsTheFolders();
    void menusLeaveOutIgnoredAndTheOtherKind();
    void emptyMenusHoldAPlaceholder();
    void itemsShareTheirRecordAndSendTheAction();
    void hostsChangesToARecordAreSaved();
    void menuIsThatOfInsertionOneByOne();
};

void tst_QWVSTManager::cleanup()
{
    QFile::remove(ownGraylist());
}

void tst_QWVSTManager::nothingInstalled()
{
    FakeSystem system;
    System::Scope current(system);
    QWVSTManager manager;
    manager.validate();
    QVERIFY(manager.database().empty());
    QVERIFY(system.alerts.shown.isEmpty());
    QVERIFY(!system.readFile(vstDatabase));
}

void tst_QWVSTManager::unreadableDatabaseIsAnEmptyCatalog_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("a dictionary") << platform::PropertyList::toXml(QVariantMap{{"path", "/x.vst"}});
    QTest::newRow("cut short")
        << platform::PropertyList::toXml(QVariantList{QVariantMap{{"path", "/x.vst"}}}).chopped(12);
}

void tst_QWVSTManager::unreadableDatabaseIsAnEmptyCatalog()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    System::Scope current(system);
    system.writeFile(vstDatabase, bytes);
    system.addVSTBundle(systemFolder + "/Echo.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    QVERIFY(manager.database().empty());
    manager.validate();
    QCOMPARE(pathsOf(QWVSTManager()), QStringList{systemFolder + "/Echo.vst"});
}

void tst_QWVSTManager::recordsWithOddValuesAreKept()
{
    FakeSystem system;
    System::Scope current(system);
    system.writePropertyList(vstDatabase, QVariantList{QVariantMap{{"path", "/VST/A.vst"}, {"ignore", "yes"}},
                                                       QVariantMap{{"path", "/VST/B.vst"}, {"modificationDate", "now"}},
                                                       QVariantMap{{"path", 5LL}, {"name", "no path"}}});
    QWVSTManager manager;
    QCOMPARE(pathsOf(manager), (QStringList{"/VST/A.vst", "/VST/B.vst", ""}));
    QVERIFY(!manager.database()[0]->ignore());
    QVERIFY(!manager.database()[1]->modificationDate());
    manager.validate(); // none of them is there
    QVERIFY(manager.database().empty());
    QCOMPARE(system.readPropertyList(vstDatabase), QVariant(QVariantList()));
}

void tst_QWVSTManager::walksBothFoldersAtAnyDepth()
{
    FakeSystem system;
    System::Scope current(system);
    const QStringList paths{systemFolder + "/Echo.vst", systemFolder + "/Acme/Delays/Tape/Deep.vst", userFolder + "/Echo.vst",
                            userFolder + "/Acme/Other.vst"};
    for (const QString &path : paths)
        system.addVSTBundle(path);
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    manager.validate();
    QCOMPARE(sorted(pathsOf(manager)), sorted(paths));
    QCOMPARE(system.processes.runs.size(), std::size_t(4));
    QVERIFY(manager.database()[0]->path().startsWith('/')); // the system's come first
    QVERIFY(manager.database()[1]->path().startsWith('/'));
}

void tst_QWVSTManager::onlyTheExactExtensionCounts_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("isFile");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("bundle") << "Echo.vst" << false << true;
    QTest::newRow("file") << "Echo.vst" << true << true;
    QTest::newRow("two dots") << "Echo.1.vst" << false << true;
    QTest::newRow("capitals") << "Echo.VST" << false << false;
    QTest::newRow("other extension") << "Echo.vst3" << false << false;
    QTest::newRow("none") << "vst" << false << false;
    QTest::newRow("dot alone") << ".vst" << false << false;
    QTest::newRow("hidden") << ".Echo.vst" << false << true;
    QTest::newRow("trailing dot") << "Echo.vst." << false << false;
}

void tst_QWVSTManager::onlyTheExactExtensionCounts()
{
    QFETCH(QString, entry);
    QFETCH(bool, isFile);
    QFETCH(bool, isFound);
    FakeSystem system;
    System::Scope current(system);
    const QString path = systemFolder + '/' + entry;
    if (isFile)
        system.writeFile(path, "no bundle");
    else
        system.makeDirectory(path);
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(pathsOf(manager), isFound ? QStringList{path} : QStringList());
}

void tst_QWVSTManager::bundlesAreNeverWalkedInto()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/Outer.vst");
    system.addVSTBundle(systemFolder + "/Outer.vst/Contents/Inner.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(pathsOf(manager), QStringList{systemFolder + "/Outer.vst"});
}

void tst_QWVSTManager::linksAreFollowedButNeverInCircles()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle("/Library/Elsewhere/Linked.vst");
    system.addVSTBundle("/Library/Elsewhere/Folder/Inside.vst");
    system.makeDirectory(systemFolder + "/Loop");
    QVERIFY(QFile::link(system.real("/Library/Elsewhere/Linked.vst"), system.real(systemFolder + "/Linked.vst")));
    QVERIFY(QFile::link(system.real("/Library/Elsewhere/Folder"), system.real(systemFolder + "/Folder")));
    QVERIFY(QFile::link(system.real(systemFolder), system.real(systemFolder + "/Loop/Again")));
    QVERIFY(QFile::link(system.real("/Library/none"), system.real(systemFolder + "/Dangling")));
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(sorted(pathsOf(manager)), (QStringList{systemFolder + "/Folder/Inside.vst", systemFolder + "/Linked.vst"}));
}

void tst_QWVSTManager::foldersThatCannotBeReadAreSkipped()
{
    FakeSystem system;
    System::Scope current(system);
    system.makeDirectory(systemFolder);
    QCOMPARE(::symlink("Self", QFile::encodeName(system.real(systemFolder + "/Self")).constData()), 0);
    system.writeFile(userFolder, "a file where a folder should be");
    QWVSTManager manager;
    manager.validate();
    QVERIFY(manager.database().empty());
}

void tst_QWVSTManager::foldersWithoutPermissionAreSkipped()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/Locked/Hidden.vst");
    system.addVSTBundle(systemFolder + "/Open/Seen.vst");
    system.addVSTBundle(userFolder + "/Hidden.vst");
    QVERIFY(setForbidden(system, systemFolder + "/Locked", true));
    QVERIFY(setForbidden(system, userFolder, true));
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    {
        const OrdinaryUser user(system);
        QVERIFY(user.isReady);
        manager.validate();
        QCOMPARE(pathsOf(manager), QStringList{systemFolder + "/Open/Seen.vst"});
        QVERIFY(system.alerts.shown.isEmpty());
        QVERIFY(setForbidden(system, systemFolder + "/Locked", false));
        QVERIFY(setForbidden(system, userFolder, false));
        manager.validate();
    }
    QCOMPARE(pathsOf(manager), (QStringList{systemFolder + "/Open/Seen.vst", systemFolder + "/Locked/Hidden.vst",
                                            userFolder + "/Hidden.vst"}));
}

void tst_QWVSTManager::bundleWithoutPermissionIsAPlugin()
{
    FakeSystem system;
    System::Scope current(system);
    writeOwnGraylist(platform::PropertyList::toXml(QVariantList{"com.acme.echo"}));
    system.addVSTBundle(systemFolder + "/Echo.vst", "com.acme.echo");
    QVERIFY(setForbidden(system, systemFolder + "/Echo.vst", true));
    HostsManager manager; // the validator, which cannot read it either, leaves nothing
    const OrdinaryUser user(system);
    QVERIFY(user.isReady);
    manager.validate();
    manager.validate();
    QCOMPARE(system.alerts.shown, QStringList{"The 'Echo' VST failed to validate and will be ignored."});
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_QWVSTManager::databaseWithoutPermissionIsAnEmptyCatalogAndStays()
{
    FakeSystem system;
    System::Scope current(system);
    writeCatalog(system, {systemFolder + "/Old.vst"});
    system.addVSTBundle(systemFolder + "/New.vst");
    const auto before = system.readFile(vstDatabase);
    QVERIFY(setForbidden(system, vstDatabase, true));
    system.processes.handler = acceptingValidator(system, vstHandOff);
    {
        const OrdinaryUser user(system);
        QVERIFY(user.isReady);
        QWVSTManager manager;
        QVERIFY(manager.database().empty());
        manager.validate();
        QCOMPARE(pathsOf(manager), QStringList{systemFolder + "/New.vst"});
    }
    QCOMPARE(system.readFile(vstDatabase), before);
    QVERIFY(system.alerts.shown.isEmpty());
}

void tst_QWVSTManager::namesThatAreNoTextAreSkipped()
{
    FakeSystem system;
    System::Scope current(system);
    system.makeDirectory(systemFolder);
    const QByteArray broken = QFile::encodeName(system.real(systemFolder)) + "/\xff\xfe.vst";
    QCOMPARE(::mkdir(broken.constData(), 0755), 0);
    system.addVSTBundle(systemFolder + "/Good.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(pathsOf(manager), QStringList{systemFolder + "/Good.vst"});
    QCOMPARE(::rmdir(broken.constData()), 0); // the fake disk could not
}

void tst_QWVSTManager::oddNamesGoAllTheWay()
{
    FakeSystem system;
    System::Scope current(system);
    const QStringList names{"A & B", "a:b", "🎛", "שלום", QString(60, QChar(0x20AC)), "x\x01y\rz", "tab\tnew\nline", "<i>&amp;<i>"};
    for (const QString &name : names)
        system.addVSTBundle(systemFolder + '/' + name + ".vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager().validate();
    QWVSTManager manager; // read back from the file
    manager.validate();
    QCOMPARE(manager.database().size(), std::size_t(names.size()));
    QCOMPARE(system.processes.runs.size(), std::size_t(names.size()));
    const QStringList titles = titlesOf(*manager.effectsMenuWithTargetAction(this, "insertPlugin:"));
    QCOMPARE(sorted(titles), sorted(names));
}

void tst_QWVSTManager::validatorGetsTheExpandedPath()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(userFolder + "/A b.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager().validate();
    const ChildProcessRequest &run = system.processes.runs.at(0);
    QVERIFY2(run.launchPath.endsWith("/QWUtilities.framework/Versions/A/VST Validator.app/Contents/MacOS/VST Validator"),
             qPrintable(run.launchPath));
    QCOMPARE(run.arguments, QStringList{system.real(userFolder + "/A b.vst")});
}

void tst_QWVSTManager::recordKeepsItsTildeWhateverIsHandedOff()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(userFolder + "/Echo.vst");
    system.processes.handler = [&](const ChildProcessRequest &request) {
        const auto description = QWVSTDescription::descriptionWithPath(request.arguments.front());
        description->setInstrument(true);
        system.writePropertyList(vstHandOff, description->state());
        return ChildProcessResult{};
    };
    QWVSTManager manager;
    manager.validate();
    manager.validate();
    QWVSTManager().validate();
    QCOMPARE(pathsOf(manager), QStringList{userFolder + "/Echo.vst"});
    QVERIFY(manager.database().front()->isInstrument());
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QVERIFY(!system.readFile(vstHandOff));
}

void tst_QWVSTManager::recordIsSavedBeforeItIsTriedAndAgainAfterwards()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.addVSTBundle(systemFolder + "/B.vst");
    QList<qsizetype> saved;
    system.processes.handler = [&](const ChildProcessRequest &) {
        saved.append(system.readPropertyList(vstDatabase).toList().size());
        system.writePropertyList(vstHandOff, QVariantMap{{"vendor", "Acme"}});
        return ChildProcessResult{};
    };
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(saved, (QList<qsizetype>{1, 2}));
    QVariantList states;
    for (const auto &record : manager.database())
        states.append(record->state());
    QCOMPARE(*system.readFile(vstDatabase), platform::PropertyList::toXml(states));
    QCOMPARE(states.back().toMap().value("vendor"), QVariant("Acme"));
}

void tst_QWVSTManager::bundleThatFailsIsTriedOnceAndLeftOutOfMenus()
{
    FakeSystem system;
    System::Scope current(system);
    system.makeDirectory(systemFolder + "/Acme/Echo.vst"); // without Info.plist
    QWVSTManager manager;
    manager.validate();
    manager.validate();
    QWVSTManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    QCOMPARE(system.alerts.shown, QStringList{"The 'Echo' VST failed to validate and will be ignored."});
    QCOMPARE(system.alerts.alerts.front().informativeText, "");
    QCOMPARE(outline(*manager.effectsMenuWithTargetAction(this, "insertPlugin:")), "No plug-ins found");
}

void tst_QWVSTManager::handOffsThatAreNoDictionaryCountAsSuccess_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = platform::PropertyList::toXml(QVariantMap{{"ignore", true}}).trimmed();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("an array") << platform::PropertyList::toXml(QVariantList{1LL});
    QTest::newRow("wrongly typed") << platform::PropertyList::toXml(QVariantMap{{"ignore", "yes"}, {"name", 1LL}});
    for (qsizetype size = 0; size < whole.size(); ++size)
        QTest::addRow("%d bytes", static_cast<int>(size)) << whole.first(size);
}

void tst_QWVSTManager::handOffsThatAreNoDictionaryCountAsSuccess()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/Echo.vst");
    system.processes.handler = [&](const ChildProcessRequest &) {
        system.writeFile(vstHandOff, bytes);
        return ChildProcessResult{};
    };
    QWVSTManager manager;
    manager.validate();
    QVERIFY(system.alerts.shown.isEmpty());
    QVERIFY(!manager.database().front()->ignore());
    QVERIFY(!system.readFile(vstHandOff));
}

void tst_QWVSTManager::changedBundleIsTriedAgainAndMovesToTheEnd()
{
    FakeSystem system;
    System::Scope current(system);
    QWVSTManager manager;
    system.processes.handler = acceptingValidator(system, vstHandOff);
    for (const char *name : {"/A.vst", "/B.vst", "/C.vst"}) {
        system.addVSTBundle(systemFolder + name);
        manager.validate();
    }
    touch(system, systemFolder + "/A.vst", 500'000'000);
    manager.validate();
    QCOMPARE(pathsOf(manager), (QStringList{systemFolder + "/B.vst", systemFolder + "/C.vst", systemFolder + "/A.vst"}));
    QCOMPARE(pathsOf(QWVSTManager()), pathsOf(manager));
    QCOMPARE(system.processes.runs.size(), std::size_t(4));
}

void tst_QWVSTManager::aNanosecondIsAChange()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager().validate();
    QWVSTManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
    touch(system, systemFolder + "/A.vst", 1);
    QWVSTManager().validate();
    QCOMPARE(system.processes.runs.size(), std::size_t(2));
}

void tst_QWVSTManager::vanishedBundleIsForgotten()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.addVSTBundle(systemFolder + "/B.vst");
    QWVSTManager manager; // both fail, and are ignored
    manager.validate();
    QVERIFY(QDir(system.real(systemFolder + "/A.vst")).removeRecursively());
    manager.validate();
    QCOMPARE(pathsOf(QWVSTManager()), QStringList{systemFolder + "/B.vst"});
    system.addVSTBundle(systemFolder + "/A.vst");
    manager.validate(); // the only way back for one that failed
    QCOMPARE(system.processes.runs.size(), std::size_t(3));
}

void tst_QWVSTManager::unchangedMachineWritesNothing()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(userFolder + "/A.vst");
    system.addVSTBundle(systemFolder + "/Acme/B.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    system.writeFile(vstDatabase, *system.readFile(vstDatabase) + " "); // would be gone after a save
    manager.validate();
    QWVSTManager().validate();
    QVERIFY(system.readFile(vstDatabase)->endsWith(' '));
    QCOMPARE(system.processes.runs.size(), std::size_t(2));
}

void tst_QWVSTManager::shippedGraylistWarns()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/Own Name.vst", "com.glimmerfrog.wobbledelay");
    QWVSTManager().validate();
    QCOMPARE(system.alerts.shown,
             QStringList{"The 'Own Name' VST has been known to cause problems with Quorwell Engineering products."});
    QCOMPARE(system.alerts.alerts.front().informativeText,
             "Would you like to ignore this VST or would you like to continue to validate it and use it?");
    QCOMPARE(system.alerts.alerts.front().buttons, (QStringList{"Ignore", "Use"}));
}

void tst_QWVSTManager::graylistedBundleCanBeIgnoredOrUsed_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QStringList>("answers");
    QTest::addColumn<int>("runs");
    QTest::newRow("ignored") << "com.acme.echo" << QStringList{"Ignore"} << 0;
    QTest::newRow("used") << "com.acme.echo" << QStringList{"Use"} << 1;
    QTest::newRow("another case") << "com.Acme.echo" << QStringList() << 1;
    QTest::newRow("longer") << "com.acme.echo2" << QStringList() << 1;
    QTest::newRow("none") << "" << QStringList() << 1;
}

void tst_QWVSTManager::graylistedBundleCanBeIgnoredOrUsed()
{
    QFETCH(QString, identifier);
    QFETCH(QStringList, answers);
    QFETCH(int, runs);
    FakeSystem system;
    System::Scope current(system);
    writeOwnGraylist(platform::PropertyList::toXml(QVariantList{"", 5LL, "com.acme.echo"}));
    system.addVSTBundle(systemFolder + "/Echo.vst", identifier);
    system.processes.handler = acceptingValidator(system, vstHandOff);
    system.alerts.answerWith(answers);
    HostsManager manager;
    manager.validate();
    manager.validate();
    QCOMPARE(system.alerts.shown.size(), answers.size());
    QCOMPARE(static_cast<int>(system.processes.runs.size()), runs);
    QCOMPARE(manager.database().front()->ignore(), runs == 0);
}

void tst_QWVSTManager::oddGraylistsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = platform::PropertyList::toXml(QVariantList{"com.acme.echo"}).trimmed();
    QTest::newRow("garbage") << QByteArray("\x00\xff", 2);
    QTest::newRow("a dictionary") << platform::PropertyList::toXml(QVariantMap{{"com.acme.echo", true}});
    QTest::newRow("numbers") << platform::PropertyList::toXml(QVariantList{1LL, QVariantList{"com.acme.echo"}});
    for (qsizetype size = 0; size < whole.size(); size += 7)
        QTest::addRow("%d bytes", static_cast<int>(size)) << whole.first(size);
}

void tst_QWVSTManager::oddGraylistsAreHarmless()
{
    QFETCH(QByteArray, bytes);
    FakeSystem system;
    System::Scope current(system);
    writeOwnGraylist(bytes);
    system.addVSTBundle(systemFolder + "/Echo.vst", "com.acme.echo");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    HostsManager().validate();
    QVERIFY(system.alerts.shown.isEmpty());
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_QWVSTManager::skipKeyStopsValidationForGood()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.addVSTBundle(systemFolder + "/B.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    system.keyboard.map[0] = 0x02;
    QWVSTManager manager;
    manager.validate();
    QVERIFY(system.processes.runs.empty());
    QCOMPARE(outline(*manager.effectsMenuWithTargetAction(this, "insertPlugin:")), "A, B");
    system.keyboard.map[0] = 0;
    system.addVSTBundle(systemFolder + "/C.vst");
    manager.validate();
    QWVSTManager().validate(); // recorded already
    QVERIFY(system.processes.runs.empty());
    QCOMPARE(system.keyboard.asked, 3);
}

void tst_QWVSTManager::exceptionsAreNotReportedDuringTheScan()
{
    FakeSystem system;
    System::Scope current(system);
    auto *application = QWApplication::sharedApplication();
    system.addVSTBundle(systemFolder + "/A.vst");
    bool handledDuringScan = true;
    system.processes.handler = [&](const ChildProcessRequest &) {
        handledDuringScan = application->handlesExceptions();
        return ChildProcessResult{};
    };
    QWVSTManager().validate();
    QVERIFY(!handledDuringScan);
    QVERIFY(application->handlesExceptions());
}

void tst_QWVSTManager::scanGoesOnAfterOneThatAnExceptionEnded()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/Acme/A.vst");
    system.processes.handler = [](const ChildProcessRequest &) -> ChildProcessResult { throw std::bad_alloc(); };
    QWVSTManager manager;
    QVERIFY_EXCEPTION_THROWN(manager.validate(), std::bad_alloc);
    QVERIFY(QWApplication::sharedApplication()->handlesExceptions());
    system.addVSTBundle(systemFolder + "/Acme/B.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    manager.validate();
    QCOMPARE(pathsOf(manager), (QStringList{systemFolder + "/Acme/A.vst", systemFolder + "/Acme/B.vst"}));
}

void tst_QWVSTManager::menuMirrorsTheFolders_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::addColumn<QString>("menu");
    const QString s = systemFolder + '/';
    const QString u = userFolder + '/';
    QTest::newRow("top level") << QStringList{s + "b.vst", s + "A.vst"} << "A, b";
    QTest::newRow("nested") << QStringList{s + "Acme/Delays/Echo.vst"} << "Acme [Delays [Echo]]";
    QTest::newRow("both folders share one tree")
        << QStringList{s + "Acme/B.vst", u + "Acme/A.vst", u + "C.vst"} << "Acme [A, B], C";
    QTest::newRow("no VST component") << QStringList{"/opt/plugins/Acme/Echo.vst"} << "Echo";
    QTest::newRow("first VST component counts") << QStringList{"/VST/a/VST/Echo.vst"} << "a [VST [Echo]]";
    QTest::newRow("capitals matter") << QStringList{"/vst/a/Echo.vst"} << "Echo";
    QTest::newRow("VST is the bundle's folder") << QStringList{"VST/Echo.vst"} << "Echo";
    QTest::newRow("VST is the bundle") << QStringList{"/a/VST"} << "VST";
    QTest::newRow("plug-in before the folder of its name")
        << QStringList{s + "Acme.vst", s + "Acme/Echo.vst", s + "Acme/B/C.vst", s + "Z.vst"} << "Acme, Z";
    QTest::newRow("folder before the plug-in of its name")
        << QStringList{s + "Acme/Echo.vst", s + "Acme.vst", s + "Acme/B.vst"} << "Acme [B, Echo], Acme";
    QTest::newRow("deeper plug-in in the way") << QStringList{s + "A/B.vst", s + "A/B/C.vst"} << "A [B]";
    QTest::newRow("case tells folders apart") << QStringList{s + "acme/A.vst", s + "ACME/B.vst"} << "acme [A], ACME [B]";
    QTest::newRow("same name twice") << QStringList{s + "Echo.vst", u + "Echo.vst"} << "Echo, Echo";
    QTest::newRow("ampersands") << QStringList{s + "R & B/A & C.vst"} << "R & B [A & C]";
}

void tst_QWVSTManager::menuMirrorsTheFolders()
{
    QFETCH(QStringList, paths);
    QFETCH(QString, menu);
    FakeSystem system;
    System::Scope current(system);
    writeCatalog(system, paths);
    QCOMPARE(outline(*QWVSTManager().effectsMenuWithTargetAction(this, "insertPlugin:")), menu);
}

void tst_QWVSTManager::menusLeaveOutIgnoredAndTheOtherKind()
{
    FakeSystem system;
    System::Scope current(system);
    system.writePropertyList(vstDatabase, QVariantList{QVariantMap{{"path", "/VST/Effect.vst"}},
                                                       QVariantMap{{"path", "/VST/Synth.vst"}, {"isInstrument", true}},
                                                       QVariantMap{{"path", "/VST/Bad.vst"}, {"ignore", true}}});
    QWVSTManager manager;
    QCOMPARE(outline(*manager.effectsMenuWithTargetAction(this, "insertPlugin:")), "Effect");
    QCOMPARE(outline(*manager.instrumentsMenuWithTargetAction(this, "insertPlugin:")), "Synth");
}

void tst_QWVSTManager::emptyMenusHoldAPlaceholder()
{
    FakeSystem system;
    System::Scope current(system);
    writeCatalog(system, {"/VST/A.vst", "/VST/B/C.vst"}, {{"ignore", true}});
    const auto menu = QWVSTManager().effectsMenuWithTargetAction(this, "insertPlugin:");
    QCOMPARE(titlesOf(*menu), QStringList{"No plug-ins found"});
    QVERIFY(!itemOf(*menu, "No plug-ins found")->target());
    QVERIFY(itemOf(*menu, "No plug-ins found")->action().isNull());
}

void tst_QWVSTManager::itemsShareTheirRecordAndSendTheAction()
{
    FakeSystem system;
    System::Scope current(system);
    writeCatalog(system, {systemFolder + "/Acme/Echo.vst"});
    Receiver receiver;
    std::unique_ptr<QMenu> menu;
    std::shared_ptr<QWVSTDescription> record;
    {
        QWVSTManager manager;
        menu = manager.effectsMenuWithTargetAction(&receiver, "insertPlugin:");
        record = manager.database().front();
    }
    itemOf(*submenuOf(*menu, "Acme"), "Echo")->trigger();
    QCOMPARE(receiver.chosen.size(), 1);
    QCOMPARE(receiver.chosen.front().value<std::shared_ptr<QWVSTDescription>>(), record);
    record->setIgnore(true); // its catalog is gone
}

void tst_QWVSTManager::hostsChangesToARecordAreSaved()
{
    FakeSystem system;
    System::Scope current(system);
    system.addVSTBundle(systemFolder + "/A.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    manager.database().front()->setIgnore(true);
    system.addVSTBundle(systemFolder + "/B.vst");
    manager.validate(); // saves
    QVERIFY(QWVSTManager().database().front()->ignore());
}

void tst_QWVSTManager::menuIsThatOfInsertionOneByOne()
{
    FakeSystem system;
    System::Scope current(system);
    QStringList paths;
    QMenu expected;
    for (int i = 0; i < 500; ++i) {
        const QString name = QString("%1lug %2").arg(i % 3 ? 'p' : 'P').arg(i * 7919 % 250);
        paths.append(systemFolder + '/' + name + ".vst");
        QWMenuSorting::addItemSortedWithTitle(expected, name);
    }
    writeCatalog(system, paths);
    QCOMPARE(outline(*QWVSTManager().effectsMenuWithTargetAction(this, "insertPlugin:")), outline(expected));
}

QW_TEST_MAIN(tst_QWVSTManager)
#include "tst_QWVSTManager.moc"
