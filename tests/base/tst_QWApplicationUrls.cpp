#include "HostMachine.h"

#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <cstdio>
#include <cstring>

namespace
{
const QVariantMap singleInstance{{"QWSingleInstance", true}};
const QVariantMap withScheme{
    {"CFBundleURLTypes", QVariantList{QVariantMap{{"CFBundleURLSchemes", QVariantList{"QWHost"}}}}}};
} // namespace

/// URLs for the host, from the command line and from other instances.
class tst_QWApplicationUrls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { journal() = {}; }
    void urlsOfTheCommandLineComeAfterTheLaunch_data();
    void urlsOfTheCommandLineComeAfterTheLaunch();
    void urlOfARealCommandLineArrives();
    void urlsHandedOverComeAfterTheLaunchOneByOne();
    void urlsHandedOverAreThoseOfTheHostsSchemes_data();
    void urlsHandedOverAreThoseOfTheHostsSchemes();
    void secondInstanceHandsItsUrlsOverAndEnds();
    void hostOfManyInstancesStaysOffTheBus();
};

void tst_QWApplicationUrls::urlsOfTheCommandLineComeAfterTheLaunch_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("in order") << QVariantMap() << QList<QByteArray>{"a1://x", "b+c://y"}
                              << QStringList{"a1://x", "b+c://y"};
    QTest::newRow("no URLs") << QVariantMap()
                             << QList<QByteArray>{"song.wav", "/a:b", "--site=http://x", "take:2", ":", ""}
                             << QStringList();
    QTest::newRow("claimed schemes only")
        << withScheme << QList<QByteArray>{"http://x", "QWHOST:open?a=%20b", "qwhost://é"}
        << QStringList{"QWHOST:open?a=%20b", "qwhost://é"};
}

void tst_QWApplicationUrls::urlsOfTheCommandLineComeAfterTheLaunch()
{
    QFETCH(QVariantMap, info);
    QFETCH(QList<QByteArray>, arguments);
    HostMachine machine(info, {arguments.begin(), arguments.end()});
    RecordingHost host(machine.argc, machine.argv.data());
    journal().whileLaunching = [] {
        QCoreApplication::processEvents(); // as the splash screen does
        quitSoon();
    };
    QWApplication::exec();
    QFETCH(QStringList, expected);
    QCOMPARE(journal().entries, wholeLaunch + expected);
}

void tst_QWApplicationUrls::urlOfARealCommandLineArrives()
{
    QProcess child;
    child.start(QFileInfo("/proc/self/exe").symLinkTarget(),
                {"--print-urls", "quorwell://open?take=1", "-platform", "offscreen"});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.readAllStandardOutput(), QByteArray("quorwell://open?take=1\n"));
    QCOMPARE(child.exitCode(), 0);
}

void tst_QWApplicationUrls::urlsHandedOverComeAfterTheLaunchOneByOne()
{
    HostMachine machine(singleInstance);
    RecordingHost host(machine.argc, machine.argv.data());
    journal().whileLaunching = [&] {
        machine.system.instanceLink.deliver("tone://early");
        QCoreApplication::processEvents();
        QTimer::singleShot(0, &host, [&] { machine.system.instanceLink.deliver("tone://later"); });
        QTimer::singleShot(0, &host, &quitSoon);
    };
    QWApplication::exec();
    QCOMPARE(machine.system.instanceLink.listening, QString("com.quorwell.test"));
    QCOMPARE(journal().entries, wholeLaunch + QStringList({"tone://early", "tone://later"}));
}

void tst_QWApplicationUrls::urlsHandedOverAreThoseOfTheHostsSchemes_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("schemes of its own") << withScheme << QStringList{"QWHOST:open?a=%20b", "qwhost://x"};
    QTest::newRow("none of its own") << QVariantMap() << QStringList{"qwhost://x"};
}

void tst_QWApplicationUrls::urlsHandedOverAreThoseOfTheHostsSchemes()
{
    QFETCH(QVariantMap, info);
    info.insert(singleInstance);
    HostMachine machine(info);
    RecordingHost host(machine.argc, machine.argv.data());
    journal().whileLaunching = [&] {
        for (const char *const text : {"QWHOST:open?a=%20b", "qwhost://x", "file:///none/such", "file:///dev/null",
                                       "javascript:x", "--site=http://x", "", ":"})
            machine.system.instanceLink.deliver(text);
        quitSoon();
    };
    QWApplication::exec();
    QFETCH(const QStringList, expected);
    QCOMPARE(journal().entries, wholeLaunch + expected);
}

void tst_QWApplicationUrls::secondInstanceHandsItsUrlsOverAndEnds()
{
    HostMachine machine(singleInstance, {"tone://1", "tone://2"});
    machine.system.instanceLink.otherInstanceRuns = true;
    RecordingHost host(machine.argc, machine.argv.data());
    QCOMPARE(QWApplication::exec(), 0);
    QCOMPARE(machine.system.instanceLink.handedOver, QStringList({"tone://1", "tone://2"}));
    QCOMPARE(journal().entries, QStringList({"outer init", "inner init"}));
}

void tst_QWApplicationUrls::hostOfManyInstancesStaysOffTheBus()
{
    HostMachine machine;
    machine.system.instanceLink.otherInstanceRuns = true;
    RecordingHost host(machine.argc, machine.argv.data());
    quitSoon();
    QWApplication::exec();
    QCOMPARE(machine.system.instanceLink.listening, QString());
    QCOMPARE(journal().entries, wholeLaunch);
}

namespace
{
int printUrls(int argc, char **argv)
{
    HostMachine machine;
    RecordingHost host(argc, argv);
    journal().whileLaunching = &quitSoon;
    const int status = QWApplication::exec();
    for (const QString &url : journal().entries.filter("://"))
        std::puts(qPrintable(url));
    return status;
}
} // namespace

int main(int argc, char **argv)
{
    registerRecordingCategories();
    if (argc > 1 && std::strcmp(argv[1], "--print-urls") == 0)
        return printUrls(argc, argv);
    tst_QWApplicationUrls test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_QWApplicationUrls.moc"
