#include "NoThreads.h"

#include <QWPlatform/foundation/BackgroundWork.h>

#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <atomic>
#include <semaphore>
#include <stdexcept>

using platform::BackgroundWork;

class tst_BackgroundWork : public QObject
{
    Q_OBJECT

private slots:
    void workRunsOnItsOwnThreadAndItsResultOnTheMainOne()
    {
        std::thread::id worker;
        std::thread::id receiver;
        BackgroundWork work;
        work.start([&] {
            worker = std::this_thread::get_id();
            return std::function<void()>([&] { receiver = std::this_thread::get_id(); });
        });
        QCOMPARE(work.running(), 1);
        QTRY_COMPARE(work.running(), 0);
        QVERIFY(worker != std::this_thread::get_id());
        QVERIFY(receiver == std::this_thread::get_id());
    }

    void resultsArriveFromTheLoopOnly()
    {
        bool delivered = false;
        std::binary_semaphore ended(0);
        BackgroundWork work;
        work.start([&] {
            ended.release();
            return std::function<void()>([&] { delivered = true; });
        });
        ended.acquire();
        QVERIFY(!delivered);
        QTRY_VERIFY(delivered);
    }

    void piecesRunSideBySide()
    {
        std::binary_semaphore first(0);
        std::binary_semaphore second(0);
        BackgroundWork work;
        work.start([&] {
            first.release();
            second.acquire(); // ends only while the other one runs
            return std::function<void()>();
        });
        work.start([&] {
            second.release();
            first.acquire();
            return std::function<void()>();
        });
        QCOMPARE(work.running(), 2);
        QTRY_COMPARE(work.running(), 0);
    }

    void resultsMayStartMoreWork()
    {
        int rounds = 0;
        BackgroundWork work;
        std::function<std::function<void()>()> round = [&] {
            return [&] {
                if (++rounds < 3)
                    work.start(round);
            };
        };
        work.start(round);
        QTRY_COMPARE(rounds, 3);
        QTRY_COMPARE(work.running(), 0);
    }

    void exceptionsAreLogged()
    {
        BackgroundWork work;
        QTest::ignoreMessage(QtWarningMsg, "Background work ended with an exception: no card");
        work.start([]() -> std::function<void()> { throw std::runtime_error("no card"); });
        QTRY_COMPARE(work.running(), 0);
        QTest::ignoreMessage(QtWarningMsg, "Background work ended with an unknown exception");
        work.start([]() -> std::function<void()> { throw 7; });
        QTRY_COMPARE(work.running(), 0);
    }

    void workForWhichThereIsNoThreadIsDropped()
    {
        const auto nothing = []() -> std::function<void()> { return {}; };
        BackgroundWork work;
        {
            const NoThreads poverty;
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Background work cannot be started: "));
            QVERIFY(!work.start(nothing));
        }
        QCOMPARE(work.running(), 0);
        QVERIFY(work.start(nothing));
        QTRY_COMPARE(work.running(), 0);
    }

    void theEndWaitsForThreadsAndDropsTheirResults()
    {
        std::atomic<bool> ended = false;
        bool delivered = false;
        std::binary_semaphore go(0);
        {
            BackgroundWork work;
            work.start([&] {
                go.acquire();
                ended = true;
                return std::function<void()>([&] { delivered = true; });
            });
            go.release();
        }
        QVERIFY(ended);
        QCoreApplication::processEvents();
        QVERIFY(!delivered);
    }
};

QTEST_GUILESS_MAIN(tst_BackgroundWork)
#include "tst_BackgroundWork.moc"
