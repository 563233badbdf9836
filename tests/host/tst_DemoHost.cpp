#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// The real host on the real machine, in a home of its own with a few small plug-ins.
class tst_DemoHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void tourMakesEveryPicture();
    void pluginThatFailsIsToldOnceAndKeptInTheCatalog();
    void secondStartValidatesNothing();
    void tourWithoutAnyPlugInSaysWhichPicturesAreMissing();
    void nonsenseOnTheCommandLineIsRefused();
    void helpIsPrinted();

private:
    struct Run
    {
        int status = -1;
        QString output;
        QString errors;
    };

    Run _run(const QStringList &arguments, const QString &lv2Path) const;
    void _installVST(const QString &home, const QString &name) const;
    QString _catalog(const QString &name) const;

    QTemporaryDir m_folder;
    QString m_home;
    QString m_lv2; ///< Folder with a few good LV2 plug-ins.
    Run m_tour;
};

static bool hasContent(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != picture.pixel(0, 0))
                return true;
        }
    }
    return false;
}

tst_DemoHost::Run tst_DemoHost::_run(const QStringList &arguments, const QString &lv2Path) const
{
    QProcess host;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LV2_PATH", lv2Path);
    host.setProcessEnvironment(environment);
    host.start(QW_DEMO_HOST, arguments);
    if (!host.waitForFinished(240000)) {
        host.kill();
        host.waitForFinished();
        return {};
    }
    return {host.exitStatus() == QProcess::NormalExit ? host.exitCode() : -1,
            QString::fromUtf8(host.readAllStandardOutput()), QString::fromUtf8(host.readAllStandardError())};
}

void tst_DemoHost::_installVST(const QString &home, const QString &name) const
{
    const QString folder = home + "/Library/Audio/Plug-Ins/VST/Small";
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::link(QString(QW_TEST_PLUGINS_DIR) + "/VST/" + name + ".vst", folder + "/" + name + ".vst"));
}

QString tst_DemoHost::_catalog(const QString &name) const
{
    return m_home + "/Library/Application Support/Quorwell/" + name;
}

void tst_DemoHost::initTestCase()
{
    m_home = m_folder.filePath("home");
    m_lv2 = m_folder.filePath("lv2");
    QVERIFY(QDir().mkpath(m_lv2));
    for (const QString &name : QStringList{"Good", "Instrument"})
        QVERIFY(QFile::link(QString(QW_TEST_PLUGINS_DIR) + "/lv2/" + name + ".lv2", m_lv2 + "/" + name + ".lv2"));
    for (const QString &name : QStringList{"Good", "Instrument", "CrashAtLoad"})
        _installVST(m_home, name);
    m_tour =
        _run({"--home", m_home, "--tour", m_folder.filePath("tour"), "--support-site", "http://127.0.0.1:1"}, m_lv2);
}

void tst_DemoHost::tourMakesEveryPicture()
{
    QVERIFY2(m_tour.status == 0, qPrintable(m_tour.output + m_tour.errors));
    for (const QString &name : QStringList{"host",
                                           "host-empty",
                                           "splash",
                                           "about",
                                           "manual",
                                           "manual-legal",
                                           "scan-alert",
                                           "effects-menu",
                                           "effect-applied",
                                           "shortcuts",
                                           "shortcuts-search",
                                           "shortcut-capture",
                                           "shortcut-capture-conflict",
                                           "shortcut-save-preset",
                                           "scrollwheel",
                                           "grid-simulator",
                                           "recorder",
                                           "recorder-search",
                                           "recorder-columns",
                                           "recorder-formats",
                                           "recorder-downloading",
                                           "recorder-empty",
                                           "preferences-general",
                                           "preferences-files",
                                           "preferences-controllers",
                                           "preferences-appearance"}) {
        const QImage picture(m_folder.filePath("tour/" + name + ".png"));
        QVERIFY2(!picture.isNull() && hasContent(picture), qPrintable(name));
        QVERIFY2(m_tour.output.contains(name + ": "), qPrintable(name));
    }
}

void tst_DemoHost::pluginThatFailsIsToldOnceAndKeptInTheCatalog()
{
    QCOMPARE(m_tour.output.count("alert: The 'CrashAtLoad' VST failed to validate and will be ignored. [OK]"), 1);
    QFile catalog(_catalog("vst_db.plist"));
    QVERIFY(catalog.open(QIODevice::ReadOnly));
    const QByteArray text = catalog.readAll();
    QVERIFY(text.contains("CrashAtLoad"));
    QVERIFY(!text.contains("Cracked Bell")); // the tour's own broken plug-in is gone again
}

void tst_DemoHost::secondStartValidatesNothing()
{
    struct Before
    {
        QString path;
        QDateTime changed;
        QByteArray bytes;
    };
    std::vector<Before> before;
    for (const QString &name : QStringList{"au_db.plist", "vst_db.plist"}) {
        QFile file(_catalog(name));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        before.push_back({file.fileName(), QFileInfo(file).lastModified(), file.readAll()});
    }
    const Run second = _run({"--home", m_home, "--quit"}, m_lv2);
    QVERIFY2(second.status == 0, qPrintable(second.errors));
    for (const Before &catalog : before) {
        QFile file(catalog.path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QFileInfo(file).lastModified(), catalog.changed);
        QCOMPARE(file.readAll(), catalog.bytes);
    }
}

void tst_DemoHost::tourWithoutAnyPlugInSaysWhichPicturesAreMissing()
{
    const QString nothing = m_folder.filePath("nothing");
    QVERIFY(QDir().mkpath(nothing));
    const Run run = _run({"--home", m_folder.filePath("bare"), "--tour", m_folder.filePath("bare-tour"),
                          "--support-site", "http://127.0.0.1:1"},
                         nothing);
    QCOMPARE(run.status, 1);
    QVERIFY(run.errors.contains("effect-applied: this picture could not be made"));
    QVERIFY(run.output.contains("about: "));
}

void tst_DemoHost::nonsenseOnTheCommandLineIsRefused()
{
    const Run run = _run({"--nonsense"}, m_lv2);
    QCOMPARE(run.status, 2);
    QCOMPARE(run.errors, "There is no option --nonsense.\n");
}

void tst_DemoHost::helpIsPrinted()
{
    const Run run = _run({"--help"}, m_lv2);
    QCOMPARE(run.status, 0);
    QVERIFY(run.output.startsWith("Usage: "));
}

QTEST_GUILESS_MAIN(tst_DemoHost)
#include "tst_DemoHost.moc"
