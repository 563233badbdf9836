#include "CatalogTestSupport.h"
#include "OrdinaryUser.h"
#include "OwnGraylist.h"
#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWUtilities/plugins/QWVSTManager.h>

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <sys/stat.h>
#include <unistd.h>

using platform::SystemScope;

/// What counts as a bundle in the folders that are walked.
class tst_VSTFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void walksBothFoldersAtAnyDepth();
    void onlyTheExactExtensionCounts_data();
    void onlyTheExactExtensionCounts();
    void bundlesAreNeverWalkedInto();
    void linksAreFollowedButNeverInCircles();
    void bundleThatLeadsNowhereIsTriedAtEveryScan();
    void foldersThatCannotBeReadAreSkipped();
    void foldersWithoutPermissionAreSkipped();
    void bundleWithoutPermissionIsAPlugin();
    void namesThatAreNoTextAreSkippedAndTold();
    void strangeNamesAreTriedOnce_data();
    void strangeNamesAreTriedOnce();
};

void tst_VSTFolders::walksBothFoldersAtAnyDepth()
{
    FakeSystem system;
    SystemScope current(system);
    const QStringList paths{systemFolder + "/Echo.vst", systemFolder + "/Acme/Delays/Tape/Deep.vst",
                            userFolder + "/Echo.vst", userFolder + "/Acme/Other.vst"};
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

void tst_VSTFolders::onlyTheExactExtensionCounts_data()
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

void tst_VSTFolders::onlyTheExactExtensionCounts()
{
    QFETCH(QString, entry);
    QFETCH(bool, isFile);
    QFETCH(bool, isFound);
    FakeSystem system;
    SystemScope current(system);
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

void tst_VSTFolders::bundlesAreNeverWalkedInto()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/Outer.vst");
    system.addVSTBundle(systemFolder + "/Outer.vst/Contents/Inner.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(pathsOf(manager), QStringList{systemFolder + "/Outer.vst"});
}

void tst_VSTFolders::linksAreFollowedButNeverInCircles()
{
    FakeSystem system;
    SystemScope current(system);
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
    QCOMPARE(sorted(pathsOf(manager)),
             (QStringList{systemFolder + "/Folder/Inside.vst", systemFolder + "/Linked.vst"}));
}

void tst_VSTFolders::bundleThatLeadsNowhereIsTriedAtEveryScan()
{
    FakeSystem system;
    SystemScope current(system);
    system.makeDirectory(systemFolder);
    QVERIFY(QFile::link(system.real("/Library/none"), system.real(systemFolder + "/Dangling.vst")));
    QWVSTManager manager;
    manager.validate();
    manager.validate(); // what is not there is forgotten, and the walk finds its name again
    QCOMPARE(system.processes.runs.size(), std::size_t(2));
    QCOMPARE(pathsOf(manager), QStringList{systemFolder + "/Dangling.vst"});
}

void tst_VSTFolders::foldersThatCannotBeReadAreSkipped()
{
    FakeSystem system;
    SystemScope current(system);
    system.makeDirectory(systemFolder);
    QCOMPARE(::symlink("Self", QFile::encodeName(system.real(systemFolder + "/Self")).constData()), 0);
    system.writeFile(userFolder, "a file where a folder should be");
    QWVSTManager manager;
    manager.validate();
    QVERIFY(manager.database().empty());
}

void tst_VSTFolders::foldersWithoutPermissionAreSkipped()
{
    FakeSystem system;
    SystemScope current(system);
    system.addVSTBundle(systemFolder + "/Locked/Hidden.vst");
    system.addVSTBundle(systemFolder + "/Open/Seen.vst");
    system.addVSTBundle(userFolder + "/Hidden.vst");
    QVERIFY(setForbidden(system, systemFolder + "/Locked", true));
    QVERIFY(setForbidden(system, userFolder, true));
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager manager;
    {
        const OrdinaryUser user;
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

void tst_VSTFolders::bundleWithoutPermissionIsAPlugin()
{
    FakeSystem system;
    SystemScope current(system);
    const OwnGraylist graylist(vstGraylist, QVariantList{"com.acme.echo"});
    system.addVSTBundle(systemFolder + "/Echo.vst", "com.acme.echo");
    QVERIFY(setForbidden(system, systemFolder + "/Echo.vst", true));
    HostsOwn<QWVSTManager> manager; // the validator, which cannot read it either, leaves nothing
    const OrdinaryUser user;
    QVERIFY(user.isReady);
    manager.validate();
    manager.validate();
    QCOMPARE(system.alerts.shown, QStringList{"The 'Echo' VST failed to validate and will be ignored."});
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

void tst_VSTFolders::namesThatAreNoTextAreSkippedAndTold()
{
    FakeSystem system;
    SystemScope current(system);
    system.makeDirectory(systemFolder);
    const QByteArray broken = QFile::encodeName(system.real(systemFolder)) + "/\xff\xfe.vst";
    QCOMPARE(::mkdir(broken.constData(), 0755), 0);
    system.addVSTBundle(systemFolder + "/Good.vst");
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("vst\" in \".*\" is passed over: its name is not UTF-8"));
    QWVSTManager manager;
    manager.validate();
    QCOMPARE(pathsOf(manager), QStringList{systemFolder + "/Good.vst"});
    QCOMPARE(::rmdir(broken.constData()), 0); // the fake disk could not
}

void tst_VSTFolders::strangeNamesAreTriedOnce_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("control characters") << QString("a\x01\x1b\n\r\t.vst");
    QTest::newRow("byte-order mark") << QStringLiteral("\uFEFFEcho.vst");
    QTest::newRow("byte-order mark alone") << QStringLiteral("\uFEFF.vst");
    QTest::newRow("mark of our own") << QString("\uE01B0001\uE01B.vst");
    QTest::newRow("not a character") << QString(QChar(0xFFFE)) + ".vst";
}

void tst_VSTFolders::strangeNamesAreTriedOnce()
{
    QFETCH(QString, name);
    FakeSystem system;
    SystemScope current(system);
    const QString path = systemFolder + '/' + name;
    system.addVSTBundle(path);
    system.processes.handler = acceptingValidator(system, vstHandOff);
    QWVSTManager().validate();
    QXmlStreamReader strict(system.readFile(vstDatabase).value_or(""));
    while (!strict.atEnd())
        strict.readNext();
    QVERIFY2(!strict.hasError(), qPrintable(strict.errorString()));
    QWVSTManager manager; // knows them from the catalog
    manager.validate();
    QCOMPARE(pathsOf(manager), QStringList{path});
    QCOMPARE(system.processes.runs.size(), std::size_t(1));
}

QW_TEST_MAIN(tst_VSTFolders)
#include "tst_VSTFolders.moc"
