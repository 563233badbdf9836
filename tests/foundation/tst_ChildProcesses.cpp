#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/linux/process/LinuxChildProcesses.h>

#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <pthread.h>
#include <thread>
#include <unistd.h>

using namespace platform;

class tst_ChildProcesses : public QObject
{
    Q_OBJECT

private slots:
    void outputAndStatusAreHandedBack()
    {
        const auto result = shell("printf 'a\\000b'; exit 3");
        QVERIFY(result.started);
        QVERIFY(result.exited);
        QCOMPARE(result.status, 3);
        QCOMPARE(result.output, QByteArray("a\0b", 3));
    }

    void argumentsArriveAsTheyAre()
    {
        const QStringList arguments{"", "a b", "$HOME \"'*", "é\n\U0001F3B9", QString(100'000, 'x')};
        const auto result = run({"/bin/sh", QStringList{"-c", "printf '<%s>' \"$@\"", "sh"} + arguments, true});
        QCOMPARE(QString::fromUtf8(result.output), "<" + arguments.join("><") + ">");
    }

    void outputThatIsNotCapturedIsEmpty()
    {
        const auto result = run({"/bin/sh", {"-c", "exit 0"}, false});
        QVERIFY(result.started && result.exited);
        QCOMPARE(result.status, 0);
        QCOMPARE(result.output, QByteArray());
    }

    void bigOutputArrivesWhole()
    {
        const auto result = shell("head -c 5000000 /dev/zero");
        QCOMPARE(result.output, QByteArray(5'000'000, '\0'));
        QCOMPARE(result.status, 0);
    }

    void errorsAreReadWithTheOutput()
    {
        const QString script = "echo one; echo two >&2; echo three";
        QCOMPARE(run({"/bin/sh", {"-c", script}, true, true}).output, "one\ntwo\nthree\n");
        QCOMPARE(run({.launchPath = "/bin/sh", .arguments = {"-c", "exec 1>&2; echo x"}, .captureErrors = true}).output,
                 "x\n");
    }

    void longOutputKeepsItsBeginningAndItsEnd_data()
    {
        QTest::addColumn<int>("longest");
        QTest::addColumn<QByteArray>("output");
        QTest::newRow("all of it") << 7 << QByteArray("abcdefg");
        QTest::newRow("one byte more") << 6 << QByteArray("abc\n(1 bytes left out)\nefg");
        QTest::newRow("twice as long") << 4 << QByteArray("ab\n(3 bytes left out)\nfg");
        QTest::newRow("nothing") << 0 << QByteArray("\n(7 bytes left out)\n");
    }

    void longOutputKeepsItsBeginningAndItsEnd()
    {
        QFETCH(int, longest);
        QFETCH(QByteArray, output);
        const QStringList script{"-c", "printf abcd; printf efg"};
        QCOMPARE(run({"/bin/sh", script, true, false, longest}).output, output);
    }

    void longestOutputBoundsWhatIsKeptOfALongOne()
    {
        const QStringList script{"-c", "printf first; head -c 20000000 /dev/zero; printf last"};
        const QByteArray output = run({"/bin/sh", script, true, false, 1000}).output;
        QVERIFY(output.size() < 1100);
        QVERIFY(output.startsWith("first") && output.endsWith("last") && output.contains("(19999009 bytes left out)"));
    }

    void processThatHoldsTheOutputIsNotWaitedFor_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("silent") << "sleep 600";
        QTest::newRow("silent, in another session") << "setsid sleep 600";
        QTest::newRow("writing, in another session") << "setsid yes";
    }

    void processThatHoldsTheOutputIsNotWaitedFor()
    {
        QFETCH(QString, command);
        const auto result = run({"/bin/sh", {"-c", command + " & echo $! >&2; exit 3"}, true, true, 4096});
        if (const pid_t left = result.output.trimmed().toInt(); left > 1) // the one that writes ends with its reader
            ::kill(left, SIGKILL);
        QCOMPARE(result.status, 3);
    }

    void whatIsLeftInTheGroupIsEnded()
    {
        const auto result = shell("sleep 600 >/dev/null & echo $!");
        const pid_t left = result.output.trimmed().toInt();
        QVERIFY(left > 1);
        QTRY_VERIFY(hasEnded(left));
    }

    void idOfTheParentIsHandedOn()
    {
        qputenv("QW_HOST_PROCESS", "1");
        const auto result = shell("echo $QW_HOST_PROCESS $PPID; env | grep -c ^QW_HOST_PROCESS=");
        qunsetenv("QW_HOST_PROCESS");
        const QByteArray own = QByteArray::number(::getpid());
        QCOMPARE(result.output, QByteArray(own + ' ' + own + "\n1\n"));
    }

    void standardInputIsEmpty()
    {
        const auto result = shell("cat; echo end");
        QCOMPARE(result.output, "end\n");
    }

    void noTerminalCanBeAsked()
    {
        const QList<QByteArray> status = run({"/bin/cat", {"/proc/self/stat"}, true}).output.split(' ');
        QCOMPARE(status.value(5), status.value(0)); // a session of its own, which begins without one
    }

    void homeAndLibraryRootAreHandedOn()
    {
        qputenv("QW_LIBRARY_ROOT", "/elsewhere");
        const auto result =
            shell("echo $HOME:$QW_LIBRARY_ROOT; env | grep -c -e ^HOME= -e ^QW_LIBRARY_ROOT=; echo $QW_TEST");
        qunsetenv("QW_LIBRARY_ROOT");
        QCOMPARE(result.output, "/home of/me:/root of\n2\nkept\n");
    }

    void noDescriptorIsHandedOn()
    {
        const int leaked = ::open("/dev/null", O_RDONLY); // without close-on-exec
        const int far = ::fcntl(leaked, F_DUPFD, 500);
        QVERIFY(leaked > 2 && far >= 500);
        // The listing's own descriptor is the only one beside the three.
        const auto result = run({"/bin/ls", {"/proc/self/fd"}, true});
        ::close(leaked);
        ::close(far);
        QCOMPARE(result.output.simplified(), "0 1 2 3");
    }

    void noDescriptorIsLeftBehind()
    {
        const auto lowestFree = [] {
            const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
            ::close(descriptor);
            return descriptor;
        };
        const int before = lowestFree();
        for (int i = 0; i < 5; ++i) {
            shell("echo x");
            shell("sleep 600 & echo x");
            run({"/nowhere/program", {}, true});
        }
        QCOMPARE(lowestFree(), before);
    }

    void signalsAreAtTheirDefaults()
    {
        sigset_t blocked;
        sigset_t old;
        sigemptyset(&blocked);
        sigaddset(&blocked, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &blocked, &old);
        const auto ignored = std::signal(SIGPIPE, SIG_IGN);
        const auto result = run({"/bin/grep", {"-E", "^Sig(Blk|Ign):", "/proc/self/status"}, true});
        std::signal(SIGPIPE, ignored);
        pthread_sigmask(SIG_SETMASK, &old, nullptr);
        constexpr quint64 own = 0x180000000; // 32 and 33 are the C library's, which takes no part in this
        for (const QByteArray &line : result.output.trimmed().split('\n'))
            QCOMPARE(line.mid(line.indexOf('\t') + 1).toULongLong(nullptr, 16) & ~own, quint64(0));
        QCOMPARE(result.output.count('\n'), 2);
    }

    void missingProgramsDoNotStart_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << "/nowhere/program";
        QTest::newRow("folder") << "/tmp";
        QTest::newRow("not executable") << "/etc/passwd";
        QTest::newRow("nothing") << "";
        QTest::newRow("not looked for") << "sh";
    }

    void missingProgramsDoNotStart()
    {
        QFETCH(QString, path);
        const auto result = run({path, {}, true});
        QVERIFY(!result.started);
        QVERIFY(!result.exited);
        QCOMPARE(result.output, QByteArray());
    }

    void deathByASignalIsTold()
    {
        const auto result = shell("echo x; kill -KILL $$");
        QVERIFY(result.started);
        QVERIFY(!result.exited);
        QCOMPARE(result.status, SIGKILL);
        QCOMPARE(result.output, "x\n");
    }

    void childThatStopsItselfIsKilled()
    {
        const auto result = run({"/bin/sh", {"-c", "kill -STOP $$"}, false});
        QVERIFY(result.started);
        QVERIFY(!result.exited);
        QCOMPARE(result.status, SIGKILL);
    }

    void childThatStopsItselfWhileItsOutputIsReadIsKilled()
    {
        const auto result = shell("echo x; kill -STOP $$");
        QVERIFY(!result.exited);
        QCOMPARE(result.status, SIGKILL);
        QCOMPARE(result.output, "x\n");
    }

    void childThatStopsItselfWhileOthersWriteIsKilled()
    {
        const QString script = "setsid yes & kill -STOP $$"; // yes ends with its reader
        const auto result = run({"/bin/sh", {"-c", script}, true, false, 4096});
        QVERIFY(!result.exited);
        QCOMPARE(result.status, SIGKILL);
    }

    void threadsDoNotHoldEachOthersPipes()
    {
        std::vector<std::thread> threads;
        std::atomic<int> good = 0;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&] {
                for (int round = 0; round < 5; ++round)
                    good += shell("echo x").output == "x\n" ? 1 : 0;
            });
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(good.load(), 40);
    }

    void allThatRunCanBeEnded()
    {
        const Locations locations("/home of/me", "/root of");
        LinuxChildProcesses processes(locations);
        const QTemporaryDir folder;
        const QString script = "trap '' TERM; sleep 1000 & echo $! >\"$1\"/new; mv \"$1\"/new \"$1\"/id; wait";
        std::vector<ChildProcessResult> results(2);
        std::vector<std::thread> threads;
        for (ChildProcessResult &result : results)
            threads.emplace_back([&] {
                result = processes.run({"/bin/sh", {"-c", script, "sh", folder.path()}, &result == &results[0]});
            });
        QTRY_VERIFY(QFile::exists(folder.filePath("id")));
        processes.endAll();
        for (std::thread &thread : threads)
            thread.join();
        QVERIFY(!results[0].started && !results[1].started);
        QVERIFY(!processes.run({"/bin/true", {}}).started);
        QTRY_VERIFY(hasEnded(number(folder.filePath("id"))));
    }

    void initTestCase() { qputenv("QW_TEST", "kept"); }

private:
    static pid_t number(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().simplified().toInt() : 0;
    }

    /// Also when nobody has reaped it yet.
    static bool hasEnded(pid_t process)
    {
        QFile state(QString("/proc/%1/stat").arg(process));
        return !state.open(QIODevice::ReadOnly) || state.readAll().contains(") Z ");
    }

    ChildProcessResult run(const ChildProcessRequest &request)
    {
        const Locations locations("/home of/me", "/root of");
        return LinuxChildProcesses(locations).run(request);
    }

    ChildProcessResult shell(const QString &script) { return run({"/bin/sh", {"-c", script}, true}); }
};

QTEST_GUILESS_MAIN(tst_ChildProcesses)
#include "tst_ChildProcesses.moc"
