#include "RecordingHost.h"

#include "fakes/FakeSystem.h"

#include <QWBase/QWApplicationLog.h>

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QFileInfo>
#include <QMainWindow>
#include <QMenuBar>
#include <QProcess>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstring>
#include <filesystem>

using platform::System;

namespace
{
/// A machine and the command line of one host.
struct Machine
{
    explicit Machine(const QVariantMap &additionalInfo = {}, std::vector<QByteArray> commandLine = {})
        : m_texts(std::move(commandLine))
    {
        QVariantMap info = FakeSystem::defaultHostInfo();
        info.insert(additionalInfo);
        system.writePropertyList(system.mainBundle().path() + "/Contents/Info.plist", info);
        m_texts.insert(m_texts.begin(), "host");
        for (QByteArray &text : m_texts)
            argv.push_back(text.data());
        argv.push_back(nullptr);
        argc = int(m_texts.size());
    }

    QByteArray log() const { return system.readFile("~/Library/Logs/Quorwell/Test Host.log").value_or(QByteArray()); }

    FakeSystem system;
    System::Scope scope{system};
    int argc = 0;
    std::vector<char *> argv;

private:
    std::vector<QByteArray> m_texts;
};

/// Ends the loop once what is posted now was delivered.
void quitSoon()
{
    QTimer::singleShot(0, qApp, [] { QTimer::singleShot(0, qApp, &QCoreApplication::quit); });
}

const QVariantMap singleInstance{{"QWSingleInstance", true}};
const QVariantMap withScheme{
    {"CFBundleURLTypes", QVariantList{QVariantMap{{"CFBundleURLSchemes", QVariantList{"QWHost"}}}}}};
const QStringList wholeLaunch{"outer init", "inner init", "outer will", "inner will", "host", "inner did", "outer did"};
} // namespace

class tst_QWApplication : public QObject
{
    Q_OBJECT

private slots:
    void init() { journal() = {}; }

    void categoriesWrapTheLaunchOfTheHostInTheirOrder();
    void launchRunsInsideTheEventLoop();
    void delegateIsToldOfTheLaunch();
    void hooksAfterTheLaunchRunWhateverThrew_data();
    void hooksAfterTheLaunchRunWhateverThrew();
    void heldKeysAreWatchedFromTheLaunchOn();
    void quitInsideTheLaunchEndsTheLoop();
    void lastClosedWindowDoesNotEndTheHost();
    void registeringACategoryTooLateIsFatal();

    void urlsOfTheCommandLineComeAfterTheLaunch_data();
    void urlsOfTheCommandLineComeAfterTheLaunch();
    void urlOfARealCommandLineArrives();
    void urlsHandedOverComeAfterTheLaunchOneByOne();
    void secondInstanceHandsItsUrlsOverAndEnds();
    void hostOfManyInstancesStaysOffTheBus();

    void categoryTakesAnEventAway();
    void exceptionOfASlotIsLoggedAndTheLoopGoesOn();
    void exceptionInAWorkersEventIsLogged();
    void exceptionHandlingIsOnUntilSwitchedOff();
    void keyThatNoWidgetTakesIsAKeyEquivalentOnce();

    void identityComesFromTheInfoPlist_data();
    void identityComesFromTheInfoPlist();
    void supportDirectoryIsBelowTheHomeFolder();
    void tempDirectoryIsPrivateAndGoesWithTheApplication();
    void sharedObjectsGoBeforeTheApplication();
};

void tst_QWApplication::categoriesWrapTheLaunchOfTheHostInTheirOrder()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    quitSoon();
    QCOMPARE(QWApplication::exec(), 0);
    QCOMPARE(journal().entries, wholeLaunch);
}

void tst_QWApplication::launchRunsInsideTheEventLoop()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    int level = 0;
    journal().whileLaunching = [&] {
        level = QThread::currentThread()->loopLevel();
        quitSoon();
    };
    QCOMPARE(journal().entries.size(), 2); // only the two init hooks ran in the constructor
    QWApplication::exec();
    QCOMPARE(level, 1);
}

class LaunchDelegate : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void applicationDidFinishLaunching() { ++launches; }

    int launches = 0;
};

void tst_QWApplication::delegateIsToldOfTheLaunch()
{
    Machine machine;
    QWApplication host(machine.argc, machine.argv.data());
    LaunchDelegate delegate;
    platform::setDelegate(&host, &delegate);
    quitSoon();
    QWApplication::exec();
    QCOMPARE(delegate.launches, 1);
}

void tst_QWApplication::hooksAfterTheLaunchRunWhateverThrew_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QStringList>("expected");
    const QString told = "exception: no way";
    QTest::newRow("host") << "host" << QStringList{"outer will", "inner will", "host", "inner did", "outer did", told};
    QTest::newRow("will") << "inner will" << QStringList{"outer will", "inner will", "inner did", "outer did", told};
    QTest::newRow("did") << "inner did"
                         << QStringList{"outer will", "inner will", "host", "inner did", told, "outer did"};
}

void tst_QWApplication::hooksAfterTheLaunchRunWhateverThrew()
{
    QFETCH(QString, where);
    Machine machine({}, {"tone://after"});
    RecordingHost host(machine.argc, machine.argv.data());
    const auto fail = [&](const QString &here) {
        if (here == where)
            throw std::runtime_error("no way");
    };
    journal() = {};
    journal().whileLaunching = [&] { fail("host"); };
    journal().whileInHook = [&](const char *hook) { fail(QString::fromUtf8(hook)); };
    quitSoon();
    QCOMPARE(QWApplication::exec(), 0);
    QFETCH(QStringList, expected);
    QCOMPARE(journal().entries, expected + QStringList{"tone://after"});
    QVERIFY2(machine.log().contains("no way"), machine.log().constData());
}

void tst_QWApplication::heldKeysAreWatchedFromTheLaunchOn()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QVERIFY(!machine.system.keyboard.isWatched);
    bool watchedDuringTheHostsWork = false;
    journal().whileLaunching = [&] { watchedDuringTheHostsWork = machine.system.keyboard.isWatched; };
    host.finishLaunching();
    QVERIFY(watchedDuringTheHostsWork);
}

void tst_QWApplication::quitInsideTheLaunchEndsTheLoop()
{
    Machine machine({}, {"tone://never"});
    RecordingHost host(machine.argc, machine.argv.data());
    journal().whileLaunching = [] { QCoreApplication::exit(3); };
    QCOMPARE(QWApplication::exec(), 3);
    QCOMPARE(journal().entries, wholeLaunch);
}

void tst_QWApplication::lastClosedWindowDoesNotEndTheHost()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QWidget window;
    bool wentOn = false;
    journal().whileLaunching = [&] {
        window.show();
        window.close();
        QTimer::singleShot(0, &host, [&] { QTimer::singleShot(0, &host, [&] { wentOn = true; }); });
        QTimer::singleShot(0, &host, [] { QTimer::singleShot(0, qApp, [] { quitSoon(); }); });
    };
    QWApplication::exec();
    QVERIFY(wentOn);
}

void tst_QWApplication::registeringACategoryTooLateIsFatal()
{
    QProcess child;
    child.start(QFileInfo("/proc/self/exe").symLinkTarget(), {"--register-late"});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    const QByteArray errors = child.readAllStandardError();
    QVERIFY2(errors.contains("The category late was registered after the application object"), errors.constData());
}

void tst_QWApplication::urlsOfTheCommandLineComeAfterTheLaunch_data()
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

void tst_QWApplication::urlsOfTheCommandLineComeAfterTheLaunch()
{
    QFETCH(QVariantMap, info);
    QFETCH(QList<QByteArray>, arguments);
    Machine machine(info, {arguments.begin(), arguments.end()});
    RecordingHost host(machine.argc, machine.argv.data());
    journal().whileLaunching = [] {
        QCoreApplication::processEvents(); // as the splash screen does
        quitSoon();
    };
    QWApplication::exec();
    QFETCH(QStringList, expected);
    QCOMPARE(journal().entries, wholeLaunch + expected);
}

void tst_QWApplication::urlOfARealCommandLineArrives()
{
    QProcess child;
    child.start(QFileInfo("/proc/self/exe").symLinkTarget(),
                {"--print-urls", "quorwell://open?take=1", "-platform", "offscreen"});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.readAllStandardOutput(), QByteArray("quorwell://open?take=1\n"));
    QCOMPARE(child.exitCode(), 0);
}

void tst_QWApplication::urlsHandedOverComeAfterTheLaunchOneByOne()
{
    Machine machine(singleInstance);
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

void tst_QWApplication::secondInstanceHandsItsUrlsOverAndEnds()
{
    Machine machine(singleInstance, {"tone://1", "tone://2"});
    machine.system.instanceLink.otherInstanceRuns = true;
    RecordingHost host(machine.argc, machine.argv.data());
    QCOMPARE(QWApplication::exec(), 0);
    QCOMPARE(machine.system.instanceLink.handedOver, QStringList({"tone://1", "tone://2"}));
    QCOMPARE(journal().entries, QStringList({"outer init", "inner init"}));
}

void tst_QWApplication::hostOfManyInstancesStaysOffTheBus()
{
    Machine machine;
    machine.system.instanceLink.otherInstanceRuns = true;
    RecordingHost host(machine.argc, machine.argv.data());
    quitSoon();
    QWApplication::exec();
    QCOMPARE(machine.system.instanceLink.listening, QString());
    QCOMPARE(journal().entries, wholeLaunch);
}

class EventCounter : public QObject
{
public:
    bool event(QEvent *event) override
    {
        ++counts[event->type()];
        return QObject::event(event);
    }

    QMap<int, int> counts;
};

void tst_QWApplication::categoryTakesAnEventAway()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    const auto taken = QEvent::Type(QEvent::registerEventType());
    const auto passed = QEvent::Type(QEvent::registerEventType());
    journal().taken = taken;
    EventCounter receiver;
    QEvent first(taken);
    QEvent second(passed);
    QVERIFY(QCoreApplication::sendEvent(&receiver, &first));
    QCoreApplication::sendEvent(&receiver, &second);
    QCOMPARE(receiver.counts, (QMap<int, int>{{passed, 1}}));
}

void tst_QWApplication::exceptionOfASlotIsLoggedAndTheLoopGoesOn()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    bool wentOn = false;
    QTimer::singleShot(0, &host, [] { throw std::runtime_error("first"); });
    QTimer::singleShot(0, &host, [] { throw 7; });
    QTimer::singleShot(0, &host, [&] { wentOn = true; });
    QTimer::singleShot(0, &host, &quitSoon);
    QCOMPARE(QWApplication::exec(), 0);
    QVERIFY(wentOn);
    QVERIFY(journal().entries.contains("exception: first"));
    QVERIFY(journal().entries.contains("exception: exception of type i"));
    QCOMPARE(machine.log().count("An exception left the handling of an event"), 2);
}

void tst_QWApplication::exceptionInAWorkersEventIsLogged()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QThread worker;
    QObject inWorker;
    inWorker.moveToThread(&worker);
    worker.start();
    QMetaObject::invokeMethod(
        &inWorker, [] { throw std::runtime_error("in a worker"); }, Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        &inWorker, [&] { worker.quit(); }, Qt::QueuedConnection);
    QVERIFY(worker.wait());
    QTRY_VERIFY(journal().entries.contains("exception: in a worker"));
}

void tst_QWApplication::exceptionHandlingIsOnUntilSwitchedOff()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    QVERIFY(host.handlesExceptions());
    host.setHandleExceptions(false);
    QVERIFY(!host.handlesExceptions());
    host.setHandleExceptions(true);
    QVERIFY(host.handlesExceptions());
}

/// Hands unknown keys to another widget, as some composed widgets do, and takes "T".
class KeyForwarder : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_T)
            return;
        QKeyEvent copy(event->type(), event->key(), event->modifiers(), event->text());
        QCoreApplication::sendEvent(&m_other, &copy);
        event->ignore();
    }

private:
    QWidget m_other; // no child: it would hand the key back to its parent
};

class SongKeeper : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void saveSong(QObject *) { ++saved; }

    int saved = 0;
};

void tst_QWApplication::keyThatNoWidgetTakesIsAKeyEquivalentOnce()
{
    Machine machine;
    RecordingHost host(machine.argc, machine.argv.data());
    SongKeeper keeper;
    QMainWindow window;
    QMenu menu;
    window.menuBar()->addMenu(&menu);
    for (const char *const key : {"s", "t"})
        platform::addMenuItem(menu, "Save", "saveSong:", key)->setTarget(&keeper);
    auto *const forwarder = new KeyForwarder(&window);
    window.setCentralWidget(forwarder);
    window.show();
    forwarder->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&window));

    QTest::keyClick(window.windowHandle(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(keeper.saved, 1);
    QTest::keyClick(window.windowHandle(), Qt::Key_T, Qt::ControlModifier);
    QCOMPARE(keeper.saved, 1); // the widget took it
    QTest::keyClick(window.windowHandle(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(keeper.saved, 2);
}

void tst_QWApplication::identityComesFromTheInfoPlist_data()
{
    QTest::addColumn<QVariantMap>("info");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("major");
    QTest::addColumn<bool>("beta");
    const auto version = [](const char *text) { return QVariantMap{{"CFBundleShortVersionString", text}}; };
    QTest::newRow("beta") << QVariantMap() << "Test Host" << 2 << true;
    QTest::newRow("display name") << QVariantMap{{"CFBundleDisplayName", "Söng & Co"}} << "Söng & Co" << 2 << true;
    QTest::newRow("final") << version("10.4.1") << "Test Host" << 10 << false;
    QTest::newRow("alpha") << version("1.0a") << "Test Host" << 1 << true;
    QTest::newRow("public beta") << version("1.5pb2") << "Test Host" << 1 << true;
    QTest::newRow("candidate") << version("3.0rc1") << "Test Host" << 3 << true;
    QTest::newRow("words") << version("4.0 final") << "Test Host" << 4 << false;
    QTest::newRow("no number") << version("x") << "Test Host" << 0 << false;
    QTest::newRow("wrong type") << QVariantMap{{"CFBundleShortVersionString", QVariantList{1}}} << "Test Host" << 0
                                << false;
    QTest::newRow("no name") << QVariantMap{{"CFBundleName", ""}} << "tst_QWApplication" << 2 << true;
}

void tst_QWApplication::identityComesFromTheInfoPlist()
{
    QFETCH(QVariantMap, info);
    Machine machine(info);
    RecordingHost host(machine.argc, machine.argv.data());
    QTEST(host.name(), "name");
    QTEST(host.majorVersion(), "major");
    QTEST(host.isBetaVersion(), "beta");
    QCOMPARE(host.code(), QString("TH"));
}

void tst_QWApplication::supportDirectoryIsBelowTheHomeFolder()
{
    Machine machine({{"CFBundleName", "In/Out"}});
    RecordingHost host(machine.argc, machine.argv.data());
    QCOMPARE(host.supportDirectory(), machine.system.real("~/Library/Application Support/Quorwell/In:Out"));
    QVERIFY(!QFileInfo::exists(host.supportDirectory()));
}

void tst_QWApplication::tempDirectoryIsPrivateAndGoesWithTheApplication()
{
    QString path;
    {
        Machine machine;
        RecordingHost host(machine.argc, machine.argv.data());
        path = host.tempDirectory();
        QCOMPARE(std::filesystem::status(path.toStdString()).permissions(), std::filesystem::perms::owner_all);
        QCOMPARE(host.tempDirectory(), path);
        QVERIFY(QDir(path).removeRecursively());
        path = host.tempDirectory();
        QVERIFY(QFileInfo(path).isDir());
    }
    QVERIFY(!QFileInfo::exists(path));
}

struct Witness
{
    ~Witness() { *seen += QWApplication::sharedApplication() ? "with application" : "alone"; }

    QStringList *seen;
};

void tst_QWApplication::sharedObjectsGoBeforeTheApplication()
{
    Machine machine;
    QStringList seen;
    {
        RecordingHost host(machine.argc, machine.argv.data());
        QCOMPARE(QWApplication::sharedApplication(), &host);
        machine.system.shared<Witness>([&] { return new Witness{&seen}; });
    }
    QCOMPARE(seen, QStringList("with application"));
    QVERIFY(!QWApplication::sharedApplication());
}

namespace
{
void registerLate(int argc, char **argv)
{
    Machine machine;
    RecordingHost host(argc, argv);
    QWApplication::registerCategory({.name = "late"});
}

int printUrls(int argc, char **argv)
{
    Machine machine;
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
    const char *const mode = argc > 1 ? argv[1] : "";
    registerRecordingCategories();
    if (std::strcmp(mode, "--register-late") == 0)
        return registerLate(argc, argv), 0;
    if (std::strcmp(mode, "--print-urls") == 0)
        return printUrls(argc, argv);
    tst_QWApplication test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_QWApplication.moc"
