#include <QWPlatform/System.h>
#include <QWPlatform/linux/desktop/LinuxWorkspace.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <fakes/FakeSystem.h>

#include <csignal>

using namespace platform;

/// A program of the test's own stands for the desktop's opener.
class tst_LinuxWorkspace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { qputenv("PATH", m_path); }

    void addressIsHandedToTheDesktop_data();
    void addressIsHandedToTheDesktop();
    void fileIsHandedToTheDesktopAsAddress();
    void missingFileIsNotOpened();
    void addressWithoutSchemeIsNotOpened_data();
    void addressWithoutSchemeIsNotOpened();
    void withoutOpenerNothingIsOpened();
    void openerThatHangsIsNotAwaited();
    void openerHasTheUsualSignals();
    void whatNothingOpensIsTold_data();
    void whatNothingOpensIsTold();
    void whatIsOpenedIsNotTold();
    void whatFailsHoursLaterIsNotTold();
    void fileIsOpenedByTheProgramOfThatName_data();
    void fileIsOpenedByTheProgramOfThatName();
    void programThatOpensNoFilesIsNotStarted_data();
    void programThatOpensNoFilesIsNotStarted();
    void ownEntryOfTheUserComesFirst();

private:
    void _install(const QByteArray &script) const;
    QByteArray _opened() const;

    QByteArray m_path;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_LinuxWorkspace::init()
{
    m_path = qgetenv("PATH");
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("PATH", m_folder->path().toUtf8());
}

void tst_LinuxWorkspace::_install(const QByteArray &script) const
{
    QFile opener(m_folder->filePath("xdg-open"));
    QVERIFY(opener.open(QIODevice::WriteOnly));
    opener.write("#!/bin/sh\n" + script + "\n");
    opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QByteArray tst_LinuxWorkspace::_opened() const
{
    QFile file(m_folder->filePath("opened"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_LinuxWorkspace::addressIsHandedToTheDesktop_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QByteArray>("argument");
    QTest::newRow("plain") << QUrl("https://example.test/page?a=b&c=d#e")
                           << QByteArray("https://example.test/page?a=b&c=d#e");
    QTest::newRow("spaces and accents") << QUrl("https://example.test/ä b")
                                        << QByteArray("https://example.test/%C3%A4%20b");
    QTest::newRow("mail") << QUrl("mailto:a@example.test") << QByteArray("mailto:a@example.test");
    QTest::newRow("shell characters") << QUrl("https://example.test/$(id)';`")
                                      << QByteArray("https://example.test/$(id)';%60");
}

void tst_LinuxWorkspace::addressIsHandedToTheDesktop()
{
    QFETCH(QUrl, url);
    QFETCH(QByteArray, argument);
    _install("printf '%s:%s\\n' $# \"$1\" > '" + m_folder->filePath("opened").toUtf8() + "'");
    QVERIFY(LinuxWorkspace().openUrl(url));
    QTRY_COMPARE(_opened(), "1:" + argument + "\n");
}

void tst_LinuxWorkspace::fileIsHandedToTheDesktopAsAddress()
{
    _install("printf '%s\\n' \"$1\" > '" + m_folder->filePath("opened").toUtf8() + "'");
    const QString path = m_folder->filePath("a b.txt");
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    QVERIFY(LinuxWorkspace().openFile(path));
    QTRY_COMPARE(_opened(), QUrl::fromLocalFile(path).toEncoded() + "\n");
}

void tst_LinuxWorkspace::missingFileIsNotOpened()
{
    _install("exit 0");
    QVERIFY(!LinuxWorkspace().openFile(m_folder->filePath("none")));
    QVERIFY(!LinuxWorkspace().openFile(""));
}

void tst_LinuxWorkspace::addressWithoutSchemeIsNotOpened_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::newRow("empty") << QUrl();
    QTest::newRow("relative") << QUrl("page.html");
    QTest::newRow("option") << QUrl("--help");
    QTest::newRow("invalid") << QUrl("http://[::1");
}

void tst_LinuxWorkspace::addressWithoutSchemeIsNotOpened()
{
    QFETCH(QUrl, url);
    _install("exit 0");
    QVERIFY(!LinuxWorkspace().openUrl(url));
}

void tst_LinuxWorkspace::withoutOpenerNothingIsOpened()
{
    QVERIFY(!LinuxWorkspace().openUrl(QUrl("https://example.test/")));
}

void tst_LinuxWorkspace::openerThatHangsIsNotAwaited()
{
    const QString fifo = m_folder->filePath("fifo");
    _install("/usr/bin/mkfifo '" + fifo.toUtf8() + "'; read line < '" + fifo.toUtf8() + "'");
    QVERIFY(LinuxWorkspace().openUrl(QUrl("https://example.test/"))); // returns while it hangs
    QTRY_VERIFY(QFile::exists(fifo));
    QFile end(fifo); // lets it go
    QVERIFY(end.open(QIODevice::WriteOnly));
    end.write("go\n");
}

void tst_LinuxWorkspace::openerHasTheUsualSignals()
{
    System::current(); // the machine itself, which takes no notice of it
    _install("/bin/sh -c 'kill -XFSZ $$'; echo $? > '" + m_folder->filePath("opened").toUtf8() + "'");
    QVERIFY(LinuxWorkspace().openUrl(QUrl("https://example.test/")));
    QTRY_COMPARE(_opened(), QByteArray::number(128 + SIGXFSZ) + "\n");
}

void tst_LinuxWorkspace::whatNothingOpensIsTold_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("no program for it") << QByteArray("exit 3");
    QTest::newRow("program failed") << QByteArray("exit 4");
}

/// The opener knows only after a while.
void tst_LinuxWorkspace::whatNothingOpensIsTold()
{
    QFETCH(QByteArray, script);
    FakeSystem system;
    const SystemScope current(system);
    _install(script);
    QVERIFY(LinuxWorkspace().openUrl(QUrl("https://example.test/")));
    QTRY_COMPARE(system.alerts.shown, QStringList("“https://example.test/” could not be opened."));
}

void tst_LinuxWorkspace::whatIsOpenedIsNotTold()
{
    FakeSystem system;
    const SystemScope current(system);
    _install("printf done > '" + m_folder->filePath("opened").toUtf8() + "'");
    QVERIFY(LinuxWorkspace().openUrl(QUrl("https://example.test/")));
    QTRY_COMPARE(_opened(), "done");
    _install("exit 3");
    QVERIFY(LinuxWorkspace().openUrl(QUrl("https://second.test/"))); // which is told after the first has ended
    QTRY_COMPARE(system.alerts.shown, QStringList("“https://second.test/” could not be opened."));
}

/// The opener may have become the browser.
void tst_LinuxWorkspace::whatFailsHoursLaterIsNotTold()
{
    FakeSystem system;
    const SystemScope current(system);
    const QString fifo = m_folder->filePath("fifo");
    _install("echo $$ > '" + m_folder->filePath("opened").toUtf8() + "'; /usr/bin/mkfifo '" + fifo.toUtf8() +
             "'; read line < '" + fifo.toUtf8() + "'; exit 4");
    QVERIFY(LinuxWorkspace().openUrl(QUrl("https://example.test/")));
    QTRY_VERIFY(QFile::exists(fifo));
    system.clock.advance(std::chrono::hours(2));
    {
        QFile end(fifo);
        QVERIFY(end.open(QIODevice::WriteOnly));
    }
    QTRY_VERIFY(::kill(_opened().trimmed().toInt(), 0) != 0); // its end was heard of
    _install("exit 3");
    QVERIFY(LinuxWorkspace().openUrl(QUrl("https://second.test/")));
    QTRY_COMPARE(system.alerts.shown, QStringList("“https://second.test/” could not be opened."));
}

namespace
{
/// A folder of desktop entries, made the user's or the machine's.
class Entries
{
public:
    explicit Entries(const char *variable)
        : m_variable(variable)
        , m_before(qgetenv(variable))
    {
        qputenv(variable, m_folder.path().toUtf8());
    }

    ~Entries() { m_before.isNull() ? qunsetenv(m_variable) : qputenv(m_variable, m_before); }
    Entries(const Entries &) = delete;
    Entries &operator=(const Entries &) = delete;

    void add(const QString &identifier, const QByteArray &keys) const
    {
        const QString path = m_folder.filePath("applications/" + identifier + ".desktop");
        QFile file(path);
        if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly))
            qFatal("No entry");
        file.write("# made for a test\n[Desktop Entry]\nType=Application\n" + keys +
                   "\n[Desktop Action new]\nName=Other\n");
    }

private:
    const char *const m_variable;
    const QByteArray m_before;
    QTemporaryDir m_folder;
};
} // namespace

void tst_LinuxWorkspace::fileIsOpenedByTheProgramOfThatName_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected"); ///< "%1" is the file.
    const QByteArray plain = "Name=Wave Editor\nExec=%1 ";
    QTest::newRow("its path") << plain + "%f"
                              << "Wave Editor"
                              << "[%1]";
    QTest::newRow("several files") << plain + "%F"
                                   << "Wave Editor"
                                   << "[%1]";
    QTest::newRow("its address") << plain + "--new %U"
                                 << "Wave Editor"
                                 << "[--new][file://%2]";
    QTest::newRow("identifier") << plain + "%f"
                                << "org-editor"
                                << "[%1]";
    QTest::newRow("quoted words") << plain + R"("a b" "c\\"d" "" %f 100%% --open=%f)"
                                  << "Wave Editor"
                                  << "[a b][c\"d][][%1][100%][--open=%1]";
    QTest::newRow("its own name, its icon, old codes") << plain + "%c %i %m %f"
                                                       << "Wave Editor"
                                                       << "[Wave Editor][%1]";
    QTest::newRow("the user's language") << QByteArray("Name=x\nName[de]=Wave Editor\nExec=%1 %f") << "Wave Editor"
                                         << "[%1]";
}

void tst_LinuxWorkspace::fileIsOpenedByTheProgramOfThatName()
{
    QFETCH(QByteArray, keys);
    QFETCH(const QString, name);
    QFETCH(QString, expected);
    QLocale::setDefault(QLocale("de_DE"));
    const auto restored = qScopeGuard([] { QLocale::setDefault(QLocale::system()); });
    const Entries entries("XDG_DATA_HOME");
    _install("for word; do printf '[%s]' \"$word\"; done > '" + m_folder->filePath("opened").toUtf8() + "'");
    entries.add("org/editor", keys.replace("%1", m_folder->filePath("xdg-open").toUtf8()));
    const QString path = m_folder->filePath("Täke 1.wav");
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    QVERIFY(LinuxWorkspace().openFileWithApplication(path, name));
    expected.replace("%1", path).replace("%2", QUrl::fromLocalFile(path).path(QUrl::FullyEncoded));
    QTRY_COMPARE(QString::fromUtf8(_opened()), expected);
}

void tst_LinuxWorkspace::programThatOpensNoFilesIsNotStarted_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::newRow("takes no files") << QByteArray("Name=Editor\nExec=/bin/true");
    QTest::newRow("is hidden") << QByteArray("Name=Editor\nHidden=true\nExec=/bin/true %f");
    QTest::newRow("wants a terminal") << QByteArray("Name=Editor\nTerminal=true\nExec=/bin/true %f");
    QTest::newRow("is gone") << QByteArray("Name=Editor\nExec=/none/such %f");
    QTest::newRow("has another name") << QByteArray("Name=Edit\nExec=/bin/true %f");
    QTest::newRow("has the name of an action") << QByteArray("Name=Edit\nExec=/bin/true %f\n[X]\nName=Editor");
    QTest::newRow("is garbage") << QByteArray("\xff\xfe=\n=\n[\nName\nExec=\"%f");
    QTest::newRow("ends in an escape") << QByteArray("Name=Editor\nExec=\"\\");
}

void tst_LinuxWorkspace::programThatOpensNoFilesIsNotStarted()
{
    QFETCH(const QByteArray, keys);
    const Entries entries("XDG_DATA_HOME");
    entries.add("editor-of-the-test", keys);
    const QString path = m_folder->filePath("take.wav");
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    QVERIFY(!LinuxWorkspace().openFileWithApplication(path, "Editor"));
    QVERIFY(!LinuxWorkspace().openFileWithApplication(m_folder->filePath("none"), "Edit"));
}

void tst_LinuxWorkspace::ownEntryOfTheUserComesFirst()
{
    const Entries own("XDG_DATA_HOME");
    const Entries all("XDG_DATA_DIRS");
    own.add("editor", "Name=Editor\nHidden=true\nExec=/bin/true %f");
    all.add("editor", "Name=Editor\nExec=/bin/true %f");
    const QString path = m_folder->filePath("take.wav");
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    QVERIFY(!LinuxWorkspace().openFileWithApplication(path, "Editor")); // which the user has put away
}

QTEST_MAIN(tst_LinuxWorkspace)
#include "tst_LinuxWorkspace.moc"
