#include "HostMachine.h"

#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/linux/desktop/LinuxWorkspace.h>

#include <QDir>
#include <QTest>
#include <QUrl>

namespace
{
const QVariantMap singleInstance{{"QWSingleInstance", true}};

QVariantMap claiming(const char *scheme)
{
    return {{"CFBundleURLTypes", QVariantList{QVariantMap{{"CFBundleURLSchemes", QVariantList{scheme}}}}}};
}

/// Of a host that has no files of its own.
class Delegate : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE bool applicationOpenFile(const QString &path)
    {
        opened += path;
        return path.endsWith(".wav");
    }

    QStringList opened;
};
} // namespace

/// Files for the host: from the command line, another instance and the workspace.
class tst_QWApplicationFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { QVERIFY(QDir::setCurrent(m_before)); }

    void filesOfTheCommandLineComeAfterTheLaunch_data();
    void filesOfTheCommandLineComeAfterTheLaunch();
    void relativePathsAreThoseOfTheStart();
    void secondInstanceHandsItsFilesOver();
    void filesHandedOverAreOpened();
    void delegateOpensFiles();
    void workspaceOpensFilesWithThisApplication_data();
    void workspaceOpensFilesWithThisApplication();

private:
    QString _path(const QString &name) const { return m_folder->filePath(name); }

    const QString m_before = QDir::currentPath();
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_QWApplicationFiles::init()
{
    journal() = {};
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/files-XXXXXX");
    QVERIFY(QDir(m_folder->path()).mkdir("folder"));
    QVERIFY(QDir(m_folder->path()).mkpath("far/away"));
    QVERIFY(QFile::link(_path("far/away"), _path("link")));
    for (const char *const name : {"far/c.wav", "a b.wav", "take:2", "tone:x", "-option", "é%20.wav", "folder/c.wav"})
        QVERIFY(QFile(_path(name)).open(QIODevice::WriteOnly));
    QVERIFY(QDir::setCurrent(m_folder->path()));
}

void tst_QWApplicationFiles::filesOfTheCommandLineComeAfterTheLaunch_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<QStringList>("arguments"); ///< "%1" is the folder.
    QTest::addColumn<QStringList>("expected");
    const QVariantMap none;
    QTest::newRow("absolute") << none << QStringList{"%1/a b.wav"} << QStringList{"open %1/a b.wav"};
    QTest::newRow("relative") << none << QStringList{"a b.wav", "./folder/../folder/c.wav"}
                              << QStringList{"open %1/a b.wav", "open %1/folder/c.wav"};
    QTest::newRow("up from behind a link") << none << QStringList{"link/../c.wav", "%1/link/../c.wav"}
                                           << QStringList{"open %1/far/c.wav", "open %1/far/c.wav"};
    QTest::newRow("relative address") << none << QStringList{"file:a%20b.wav", "file:./a%20b.wav"} << QStringList();
    QTest::newRow("addresses of files") << none << QStringList{"file://%1/a%20b.wav", "file://%1/none"}
                                        << QStringList{"open %1/a b.wav"};
    QTest::newRow("in order with URLs") << none << QStringList{"tone://1", "a b.wav", "tone://2", "take:2"}
                                        << QStringList{"tone://1", "open %1/a b.wav", "tone://2", "open %1/take:2"};
    QTest::newRow("names with a meaning elsewhere")
        << none << QStringList{"é%20.wav", "tone:x"} << QStringList{"open %1/é%20.wav", "open %1/tone:x"};
    QTest::newRow("no files") << none << QStringList{"none.wav", "folder", "-option", "", "/dev/null", "."}
                              << QStringList();
    QTest::newRow("host with schemes of its own") << claiming("tone") << QStringList{"tone://1", "a b.wav", "x://1"}
                                                  << QStringList{"tone://1", "open %1/a b.wav"};
    QTest::newRow("host that claims addresses of files")
        << claiming("file") << QStringList{"file:///none", "take:2"} << QStringList{"file:///none", "file://%1/take:2"};
}

void tst_QWApplicationFiles::filesOfTheCommandLineComeAfterTheLaunch()
{
    QFETCH(const QVariantMap, info);
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    std::vector<QByteArray> commandLine;
    for (const QString &argument : arguments)
        commandLine.push_back(QString(argument).replace("%1", m_folder->path()).toUtf8());
    expected.replaceInStrings("%1", m_folder->path());
    HostMachine machine(info, commandLine);
    RecordingHost host(machine.argc, machine.argv.data());
    journal().whileLaunching = &quitSoon;
    QWApplication::exec();
    QCOMPARE(journal().entries, wholeLaunch + expected);
}

void tst_QWApplicationFiles::relativePathsAreThoseOfTheStart()
{
    HostMachine machine({}, {"a b.wav"});
    RecordingHost host(machine.argc, machine.argv.data());
    QVERIFY(QDir::setCurrent("/"));
    journal().whileLaunching = &quitSoon;
    QWApplication::exec();
    QCOMPARE(journal().entries, wholeLaunch + QStringList("open " + _path("a b.wav")));
}

void tst_QWApplicationFiles::secondInstanceHandsItsFilesOver()
{
    HostMachine machine(singleInstance, {"a b.wav", "tone://1", "none.wav"});
    machine.system.instanceLink.otherInstanceRuns = true;
    RecordingHost host(machine.argc, machine.argv.data());
    QCOMPARE(QWApplication::exec(), 0);
    QCOMPARE(machine.system.instanceLink.handedOver,
             QStringList({"file://" + m_folder->path() + "/a%20b.wav", "tone://1"}));
}

void tst_QWApplicationFiles::filesHandedOverAreOpened()
{
    HostMachine machine(singleInstance);
    RecordingHost host(machine.argc, machine.argv.data());
    journal().whileLaunching = [&] {
        for (const QString &text :
             {QUrl::fromLocalFile(_path("a b.wav")).toString(QUrl::FullyEncoded), QString("a b.wav"), _path("a b.wav"),
              QString("file:///dev/zero"), QString("file://elsewhere/a"), QString("file:a%20b.wav")})
            machine.system.instanceLink.deliver(text);
        quitSoon();
    };
    QWApplication::exec();
    QCOMPARE(journal().entries, wholeLaunch + QStringList("open " + _path("a b.wav")));
}

void tst_QWApplicationFiles::delegateOpensFiles()
{
    HostMachine machine;
    QWApplication host(machine.argc, machine.argv.data());
    QVERIFY(!host.openFile("/take.wav"));
    Delegate delegate;
    platform::setDelegate(&host, &delegate);
    QVERIFY(host.openFile("/take.wav"));
    QVERIFY(!host.openFile("/take.txt"));
    QCOMPARE(delegate.opened, QStringList({"/take.wav", "/take.txt"}));
}

void tst_QWApplicationFiles::workspaceOpensFilesWithThisApplication_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("application");
    QTest::addColumn<bool>("opens");
    QTest::newRow("its name") << "a b.wav"
                              << "Test Host" << true;
    QTest::newRow("no such file") << "none"
                                  << "Test Host" << false;
    QTest::newRow("another's name") << "a b.wav"
                                    << "No Such Program" << false;
    QTest::newRow("no name") << "a b.wav"
                             << "" << false;
}

void tst_QWApplicationFiles::workspaceOpensFilesWithThisApplication()
{
    QFETCH(const QString, file);
    QFETCH(const QString, application);
    QFETCH(const bool, opens);
    HostMachine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QCOMPARE(host.name(), "Test Host");
    QCOMPARE(platform::LinuxWorkspace().openFileWithApplication(_path(file), application), opens);
    QCOMPARE(journal().entries.filter("open "), opens ? QStringList("open " + _path(file)) : QStringList());
}

int main(int argc, char **argv)
{
    registerRecordingCategories();
    tst_QWApplicationFiles test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_QWApplicationFiles.moc"
