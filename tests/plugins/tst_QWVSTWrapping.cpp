#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWUtilities/plugins/QWVSTWrapping.h>

#include <fakes/FakeSystem.h>

#include <QSemaphore>
#include <QTest>

class tst_QWVSTWrapping : public QObject
{
    Q_OBJECT

private slots:
    void programRunsUntilNothingIsLeft()
    {
        FakeSystem system;
        const platform::SystemScope current(system);
        system.processes.handler = [&](const auto &) {
            const int status = system.processes.runs.size() < 3 ? 3 : 0;
            return platform::ChildProcessResult{.started = true, .exited = true, .status = status, .output = {}};
        };
        int done = 0;
        QVERIFY(QWVSTWrapping::sharedInstance().begin([&] { ++done; }));
        QTRY_VERIFY(!QWVSTWrapping::sharedInstance().isUnderWay());
        QCOMPARE(done, 1);
        QCOMPARE(system.processes.runs.size(), std::size_t(3));
        for (const platform::ChildProcessRequest &run : system.processes.runs)
            QVERIFY(QFileInfo(run.launchPath).isExecutable());
    }

    void onlyOneIsUnderWay()
    {
        FakeSystem system;
        const platform::SystemScope current(system);
        QSemaphore mayEnd;
        system.processes.handler = [&](const auto &) {
            mayEnd.acquire();
            return platform::ChildProcessResult{.started = true, .exited = true, .status = 0, .output = {}};
        };
        int done = 0;
        auto &wrapping = QWVSTWrapping::sharedInstance();
        QVERIFY(wrapping.begin([&] { ++done; }));
        QVERIFY(!wrapping.begin([&] { done += 100; }));
        mayEnd.release();
        QTRY_COMPARE(done, 1);
        QVERIFY(wrapping.begin([&] { ++done; }));
        mayEnd.release();
        QTRY_COMPARE(done, 2);
    }

    void missingProgramIsTheEnd()
    {
        FakeSystem system;
        const platform::SystemScope current(system);
        system.processes.handler = [](const auto &) { return platform::ChildProcessResult(); };
        bool isDone = false;
        QVERIFY(QWVSTWrapping::sharedInstance().begin([&] { isDone = true; }));
        QTRY_VERIFY(isDone);
    }

    void hostThatQuitsWaitsForOneRunOnly()
    {
        bool isDone = false;
        std::size_t runs = 0;
        {
            FakeSystem system;
            const platform::SystemScope current(system);
            QSemaphore hasBegun;
            QSemaphore mayEnd;
            system.processes.handler = [&](const auto &) {
                hasBegun.release();
                mayEnd.acquire();
                runs = system.processes.runs.size();
                return platform::ChildProcessResult{.started = true, .exited = true, .status = 3, .output = {}};
            };
            QVERIFY(QWVSTWrapping::sharedInstance().begin([&] { isDone = true; }));
            hasBegun.acquire();
            system.releaseShared();
            mayEnd.release();
            QTRY_COMPARE(system.backgroundWork().running(), 0);
        }
        QVERIFY(!isDone);
        QCOMPARE(runs, std::size_t(1));
    }

    void hostThatQuitsEndsTheRun()
    {
        FakeSystem system;
        const platform::SystemScope current(system);
        QSemaphore hasBegun;
        QSemaphore isEnded;
        system.processes.handler = [&](const auto &) {
            hasBegun.release();
            isEnded.acquire();
            return platform::ChildProcessResult();
        };
        system.processes.onEndAll = [&] { isEnded.release(); };
        QVERIFY(QWVSTWrapping::sharedInstance().begin([] {}));
        hasBegun.acquire();
        system.releaseShared();
        system.endWork();
        QCOMPARE(system.processes.runs.size(), std::size_t(1));
    }
};

QTEST_GUILESS_MAIN(tst_QWVSTWrapping)
#include "tst_QWVSTWrapping.moc"
