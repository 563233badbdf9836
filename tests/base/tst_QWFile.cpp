#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWBase/QWError.h>
#include <QWBase/QWFile.h>

#include <QWPlatform/foundation/Locations.h>

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

/// One fake machine for each test.
class tst_QWFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void conformPathGivesTheStandardForm_data();
    void conformPathGivesTheStandardForm();
    void existenceFollowsLinks_data();
    void existenceFollowsLinks();
    void libraryPathsLieBelowTheLibraryRoot();
    void contentsAreInTheSystemsOrder();
    void contentsOfWhatIsNoFolderAreNone_data();
    void contentsOfWhatIsNoFolderAreNone();
    void modificationDateIsExactToTheNanosecond();
    void createFileMakesOrEmptiesAFile();
    void createDirectoryMakesItsParents();
    void createDirectoryFailsOverAFile();
    void emptyDirectoryKeepsTheFolderAndLeavesLinkedOnesAlone();
    void deleteRemovesALinkAndNotItsTarget();
    void deleteRemovesAWholeFolder();
    void deleteOfNothingIsAnError_data();
    void deleteOfNothingIsAnError();
    void copyKeepsLinksPermissionsAndDates();
    void copyCopiesOneFile();
    void copyFailsAndLeavesNothing_data();
    void copyFailsAndLeavesNothing();
    void errorTellsWhatFailedAndWhy();

private:
    std::string _real(const QString &path) const { return QFile::encodeName(m_system->real(path)).toStdString(); }
    void _link(const QString &target, const QString &path) const { QVERIFY(QFile::link(target, m_system->real(path))); }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
};

void tst_QWFile::init()
{
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<platform::SystemScope>(*m_system);
}

void tst_QWFile::cleanup()
{
    m_scope.reset();
    m_system.reset();
}

void tst_QWFile::conformPathGivesTheStandardForm_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("tilde") << "~/a"
                           << "HOME/a";
    QTest::newRow("only tilde") << "~"
                                << "HOME";
    QTest::newRow("tilde of a name") << "/a/~b"
                                     << "/a/~b";
    QTest::newRow("documented place") << "/Library/Audio"
                                      << "/Library/Audio";
    QTest::newRow("dots and slashes") << "/a//b/../c/./d/"
                                      << "/a/c/d";
    QTest::newRow("relative") << "a"
                              << "CWD/a";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("root") << "/"
                          << "/";
}

void tst_QWFile::conformPathGivesTheStandardForm()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    expected.replace("HOME", m_system->real("~")).replace("CWD", QDir::currentPath());
    QCOMPARE(QWFile::conformPath(path), expected);
}

void tst_QWFile::existenceFollowsLinks_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("file");
    QTest::addColumn<bool>("folder");
    QTest::newRow("file") << "~/file" << true << false;
    QTest::newRow("folder") << "~/folder" << false << true;
    QTest::newRow("home") << "~" << false << true;
    QTest::newRow("link to a file") << "~/to file" << true << false;
    QTest::newRow("link to a folder") << "~/to folder" << false << true;
    QTest::newRow("dangling link") << "~/to nothing" << false << false;
    QTest::newRow("nothing") << "~/nothing" << false << false;
    QTest::newRow("below a file") << "~/file/below" << false << false;
    QTest::newRow("empty path") << "" << false << false;
    QTest::newRow("letters of all kinds") << "~/folder/ä & 日本 🎹" << true << false;
}

void tst_QWFile::existenceFollowsLinks()
{
    m_system->writeFile("~/file", "x");
    m_system->writeFile("~/folder/ä & 日本 🎹", "x");
    _link("file", "~/to file");
    _link("folder", "~/to folder");
    _link("missing", "~/to nothing");
    QFETCH(QString, path);
    QFETCH(bool, file);
    QFETCH(bool, folder);
    QCOMPARE(QWFile::existsAtPath(path), file || folder);
    QCOMPARE(QWFile::fileExistsAtPath(path), file);
    QCOMPARE(QWFile::directoryExistsAtPath(path), folder);
}

void tst_QWFile::libraryPathsLieBelowTheLibraryRoot()
{
    QVERIFY(QWFile::createDirectoryAtPath("/Library/Audio/Plug-Ins"));
    QVERIFY(QWFile::createFileAtPath("/Library/Audio/Plug-Ins/a"));
    QVERIFY(QFileInfo::exists(m_system->locations().libraryRoot() + "/Library/Audio/Plug-Ins/a"));
    QCOMPARE(QWFile::contentsOfDirectoryAtPath("/Library/Audio/Plug-Ins"), QStringList("a"));
}

void tst_QWFile::contentsAreInTheSystemsOrder()
{
    QStringList names;
    for (int i = 0; i < 200; ++i)
        names += QString(".hidden %1").arg(i);
    for (const QString &name : names)
        m_system->writeFile("~/folder/" + name, "");
    m_system->makeDirectory("~/folder/sub");
    _link("missing", "~/folder/dangling");
    names << "sub"
          << "dangling";

    QStringList systemOrder;
    for (const auto &entry : std::filesystem::directory_iterator(_real("~/folder")))
        systemOrder += QString::fromStdString(entry.path().filename());
    QWError error;
    const auto contents = QWFile::contentsOfDirectoryAtPath("~/folder", &error);
    QCOMPARE(contents, systemOrder);
    QCOMPARE(QSet<QString>(contents->begin(), contents->end()), QSet<QString>(names.begin(), names.end()));
    QVERIFY(!error.isSet());
}

void tst_QWFile::contentsOfWhatIsNoFolderAreNone_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << "~/nothing";
    QTest::newRow("file") << "~/file";
    QTest::newRow("empty path") << "";
}

void tst_QWFile::contentsOfWhatIsNoFolderAreNone()
{
    m_system->writeFile("~/file", "x");
    QFETCH(QString, path);
    QWError error;
    QVERIFY(!QWFile::contentsOfDirectoryAtPath(path, &error));
    QVERIFY(error.isSet());
    QVERIFY(!error.reason().isEmpty());
    QVERIFY(!QWFile::contentsOfDirectoryAtPath(path)); // without asking for the reason
}

void tst_QWFile::modificationDateIsExactToTheNanosecond()
{
    m_system->makeDirectory("~/Echo.vst");
    _link("Echo.vst", "~/link");
    const timespec times[] = {{1, 0}, {1'236'269'220, 123'456'789}};
    QCOMPARE(::utimensat(AT_FDCWD, _real("~/Echo.vst").c_str(), times, 0), 0);
    QCOMPARE(QWFile::modificationDateOfFileAtPath("~/Echo.vst"), 1'236'269'220'123'456'789);
    QCOMPARE(QWFile::modificationDateOfFileAtPath("~/link"), 1'236'269'220'123'456'789);
    QCOMPARE(QWFile::modificationDateOfFileAtPath("~/nothing"), std::nullopt);

    const timespec before1970[] = {{1, 0}, {-2, 500'000'000}};
    QCOMPARE(::utimensat(AT_FDCWD, _real("~/Echo.vst").c_str(), before1970, 0), 0);
    QCOMPARE(QWFile::modificationDateOfFileAtPath("~/Echo.vst"), -1'500'000'000);
}

void tst_QWFile::createFileMakesOrEmptiesAFile()
{
    QVERIFY(QWFile::createFileAtPath("~/new"));
    QCOMPARE(m_system->readFile("~/new"), QByteArray());
    m_system->writeFile("~/old", "content");
    QVERIFY(QWFile::createFileAtPath("~/old"));
    QCOMPARE(m_system->readFile("~/old"), QByteArray());

    QWError error;
    QVERIFY(!QWFile::createFileAtPath("~/no folder/new", &error));
    QVERIFY(error.isSet());
    QVERIFY(!QWFile::createFileAtPath("~", &error));
}

void tst_QWFile::createDirectoryMakesItsParents()
{
    QVERIFY(QWFile::createDirectoryAtPath("~/a/b/c/"));
    QVERIFY(QWFile::directoryExistsAtPath("~/a/b/c"));
    QVERIFY(QWFile::createDirectoryAtPath("~/a/b/c")); // exists
    _link("a", "~/to a");
    QVERIFY(QWFile::createDirectoryAtPath("~/to a"));
}

void tst_QWFile::createDirectoryFailsOverAFile()
{
    m_system->writeFile("~/file", "x");
    for (const char *const path : {"~/file", "~/file/below", ""}) {
        QWError error;
        QVERIFY2(!QWFile::createDirectoryAtPath(path, &error), path);
        QVERIFY(!error.reason().isEmpty());
    }
    QCOMPARE(m_system->readFile("~/file"), QByteArray("x"));
}

void tst_QWFile::emptyDirectoryKeepsTheFolderAndLeavesLinkedOnesAlone()
{
    m_system->writeFile("~/precious/file", "x");
    m_system->writeFile("~/folder/sub/deep/file", "x");
    m_system->writeFile("~/folder/.hidden", "x");
    m_system->writeFile("~/folder/locked/file", "x");
    QVERIFY(QFile::setPermissions(m_system->real("~/folder/.hidden"), QFile::ReadOwner));
    _link("../precious", "~/folder/link");
    _link("../../precious", "~/folder/sub/link");

    QVERIFY(QWFile::emptyDirectoryAtPath("~/folder"));
    QCOMPARE(QWFile::contentsOfDirectoryAtPath("~/folder"), QStringList());
    QCOMPARE(m_system->readFile("~/precious/file"), QByteArray("x"));

    QWError error;
    QVERIFY(!QWFile::emptyDirectoryAtPath("~/nothing", &error));
    QVERIFY(!QWFile::emptyDirectoryAtPath("~/precious/file", &error));
    QCOMPARE(m_system->readFile("~/precious/file"), QByteArray("x"));
}

void tst_QWFile::deleteRemovesALinkAndNotItsTarget()
{
    m_system->writeFile("~/folder/file", "x");
    _link("folder", "~/link");
    _link("missing", "~/dangling");
    QVERIFY(QWFile::deleteFileAtPath("~/link"));
    QVERIFY(QWFile::deleteFileAtPath("~/dangling"));
    QCOMPARE(m_system->readFile("~/folder/file"), QByteArray("x"));
    QVERIFY(!QFileInfo(m_system->real("~/link")).isSymLink());
}

void tst_QWFile::deleteRemovesAWholeFolder()
{
    m_system->writeFile("~/folder/a/b/file", "x");
    m_system->writeFile("~/folder/file", "x");
    QVERIFY(QWFile::deleteFileAtPath("~/folder/"));
    QVERIFY(!QWFile::existsAtPath("~/folder"));
}

void tst_QWFile::deleteOfNothingIsAnError_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << "~/nothing";
    QTest::newRow("empty path") << "";
    QTest::newRow("root") << "/"; // refused, whoever asks
    QTest::newRow("root in disguise") << "//tmp/..//";
}

void tst_QWFile::deleteOfNothingIsAnError()
{
    QFETCH(QString, path);
    QWError error;
    QVERIFY(!QWFile::deleteFileAtPath(path, &error));
    QVERIFY(error.isSet());
}

void tst_QWFile::copyKeepsLinksPermissionsAndDates()
{
    m_system->writeFile("~/from/sub/file", QByteArray(300'000, 'x'));
    m_system->writeFile("~/from/program", "#!");
    _link("sub/file", "~/from/link");
    _link("missing", "~/from/dangling");
    QCOMPARE(::chmod(_real("~/from/program").c_str(), 0755), 0);
    QCOMPARE(::chmod(_real("~/from/sub").c_str(), 0500), 0);
    const timespec times[] = {{5, 0}, {1000, 7}};
    QCOMPARE(::utimensat(AT_FDCWD, _real("~/from/sub").c_str(), times, 0), 0);
    QCOMPARE(::utimensat(AT_FDCWD, _real("~/from/program").c_str(), times, 0), 0);

    QWError error;
    QVERIFY2(QWFile::copyPathToPath("~/from", "~/to", &error), qPrintable(error.reason()));
    QCOMPARE(m_system->readFile("~/to/sub/file"), QByteArray(300'000, 'x'));
    QCOMPARE(std::filesystem::read_symlink(_real("~/to/link")), "sub/file");
    QCOMPARE(std::filesystem::read_symlink(_real("~/to/dangling")), "missing");
    for (const char *const path : {"/sub", "/program"}) {
        struct stat from;
        struct stat to;
        QCOMPARE(::stat(_real(QString("~/from") + path).c_str(), &from), 0);
        QCOMPARE(::stat(_real(QString("~/to") + path).c_str(), &to), 0);
        QCOMPARE(to.st_mode, from.st_mode);
        QCOMPARE(to.st_mtim.tv_sec, 1000);
        QCOMPARE(to.st_mtim.tv_nsec, 7);
    }
}

void tst_QWFile::copyCopiesOneFile()
{
    m_system->writeFile("~/a", "1");
    QVERIFY(QWFile::copyPathToPath("~/a", "/Library/b") == false); // no folder to hold it
    m_system->makeDirectory("/Library");
    QVERIFY(QWFile::copyPathToPath("~/a", "/Library/b"));
    QCOMPARE(m_system->readFile("/Library/b"), QByteArray("1"));
}

void tst_QWFile::copyFailsAndLeavesNothing_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::newRow("no source") << "~/nothing"
                               << "~/new";
    QTest::newRow("folder into itself") << "~/folder"
                                        << "~/folder/sub/new";
    QTest::newRow("folder into itself by a link") << "~/folder"
                                                  << "~/link/new";
    QTest::newRow("something that cannot be copied") << "~/with pipe"
                                                     << "~/new";
}

void tst_QWFile::copyFailsAndLeavesNothing()
{
    m_system->writeFile("~/folder/sub/file", "x");
    _link("folder/sub", "~/link");
    m_system->writeFile("~/with pipe/file", "x");
    QCOMPARE(::mkfifo(_real("~/with pipe/pipe").c_str(), 0600), 0);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QWError error;
    QVERIFY(!QWFile::copyPathToPath(from, to, &error));
    QVERIFY(error.isSet());
    QVERIFY(!QWFile::existsAtPath(to));

    m_system->writeFile("~/there", "old");
    QVERIFY(!QWFile::copyPathToPath("~/folder", "~/there"));
    QVERIFY(!QWFile::copyPathToPath("~/folder/sub/file", "~/there"));
    QCOMPARE(m_system->readFile("~/there"), QByteArray("old"));
}

void tst_QWFile::errorTellsWhatFailedAndWhy()
{
    m_system->addHostResource("Localizable.strings", "\"The folder “%@” could not be read.\" = \"„%@“ unlesbar\";");
    QWError error;
    QVERIFY(!QWFile::contentsOfDirectoryAtPath("~/50 %@ off", &error));
    QCOMPARE(error.message(), QString("„~/50 %@ off“ unlesbar"));
    QCOMPARE(error.reason(), QString("No such file or directory"));
    error.alert();
    QCOMPARE(m_system->alerts.shown.size(), 1);
}

QW_TEST_MAIN(tst_QWFile)
#include "tst_QWFile.moc"
