#include <QWUtilities/controllers/QWMonomeRemoteObserver.h>
#include <QWUtilities/controllers/grid/GridObservers.h>

#include <QTest>

#include <atomic>
#include <future>

using qw::GridObservers;
using namespace std::chrono_literals;

namespace
{
class Observer : public QWMonomeRemoteObserver
{
public:
    std::function<void()> called;
    std::atomic<int> calls = 0;
};

void callAll(GridObservers &observers)
{
    observers.each([](QWMonomeRemoteObserver &o) {
        auto &observer = static_cast<Observer &>(o);
        ++observer.calls;
        if (observer.called)
            observer.called();
    });
}

/// A door that the test opens.
class Gate
{
public:
    void open() { m_promise.set_value(); }
    void pass() const { m_future.wait(); }
    bool isPassed(std::chrono::milliseconds within) const
    {
        return m_future.wait_for(within) == std::future_status::ready;
    }

private:
    std::promise<void> m_promise;
    std::shared_future<void> m_future = m_promise.get_future().share();
};
} // namespace

class tst_GridObservers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areCalledInOrderOfAddition();
    void areKeptOnce();
    void mayRemoveThemselves();
    void mayRemoveOthersBeforeTheirTurn();
    void addedInACallIsCalledTheNextTime();
    void mayBeReleasedInACall();
    void cannotBeAddedAfterTheRelease();
    void removalWaitsForACallOnAnotherThread();
    void releaseWaitsForNobody();
    void removalAfterTheReleaseWaitsToo();
    void removalOfAnotherDoesNotWait();
    void mayRemoveEachOtherOnTwoThreads();
    void mayComeAndGoWhileTheyAreCalled();
};

void tst_GridObservers::areCalledInOrderOfAddition()
{
    GridObservers observers;
    Observer first, second;
    QStringList order;
    first.called = [&] { order.append("first"); };
    second.called = [&] { order.append("second"); };
    observers.add(second);
    observers.add(first);
    callAll(observers);
    QCOMPARE(order, (QStringList{"second", "first"}));
}

void tst_GridObservers::areKeptOnce()
{
    GridObservers observers;
    Observer observer;
    QVERIFY(!observers.has(observer));
    observers.add(observer);
    observers.add(observer);
    QVERIFY(observers.has(observer));
    callAll(observers);
    QCOMPARE(observer.calls.load(), 1);
    observers.remove(observer);
    QVERIFY(!observers.has(observer));
    observers.remove(observer);
    callAll(observers);
    QCOMPARE(observer.calls.load(), 1);
}

void tst_GridObservers::mayRemoveThemselves()
{
    GridObservers observers;
    Observer first, second;
    first.called = [&] { observers.remove(first); };
    observers.add(first);
    observers.add(second);
    callAll(observers);
    callAll(observers);
    QCOMPARE(first.calls.load(), 1);
    QCOMPARE(second.calls.load(), 2);
}

void tst_GridObservers::mayRemoveOthersBeforeTheirTurn()
{
    GridObservers observers;
    Observer first;
    auto second = std::make_unique<Observer>();
    Observer third;
    first.called = [&] {
        if (second)
            observers.remove(*second);
        second.reset();
    };
    observers.add(first);
    observers.add(*second);
    observers.add(third);
    callAll(observers);
    callAll(observers);
    QCOMPARE(third.calls.load(), 2);
}

void tst_GridObservers::addedInACallIsCalledTheNextTime()
{
    GridObservers observers;
    Observer first, second;
    first.called = [&] { observers.add(second); };
    observers.add(first);
    callAll(observers);
    QCOMPARE(second.calls.load(), 0);
    callAll(observers);
    QCOMPARE(second.calls.load(), 1);
}

void tst_GridObservers::mayBeReleasedInACall()
{
    GridObservers observers;
    Observer first, second;
    first.called = [&] { observers.release(); };
    observers.add(first);
    observers.add(second);
    callAll(observers);
    QCOMPARE(second.calls.load(), 0);
    QVERIFY(!observers.has(first));
}

void tst_GridObservers::cannotBeAddedAfterTheRelease()
{
    GridObservers observers;
    Observer observer;
    observers.release();
    observers.add(observer);
    QVERIFY(!observers.has(observer));
    callAll(observers);
    QCOMPARE(observer.calls.load(), 0);
}

/// What is done by @p remove while another thread is inside the observer returns only after that call has.
#define QW_VERIFY_WAITS(remove)                                                                                        \
    GridObservers observers;                                                                                           \
    Observer observer;                                                                                                 \
    Gate inside, leave;                                                                                                \
    std::atomic<bool> left = false;                                                                                    \
    observer.called = [&] {                                                                                            \
        inside.open();                                                                                                 \
        leave.pass();                                                                                                  \
        left = true;                                                                                                   \
    };                                                                                                                 \
    observers.add(observer);                                                                                           \
    const auto calling = std::async(std::launch::async, [&] { callAll(observers); });                                  \
    inside.pass();                                                                                                     \
    auto removing = std::async(std::launch::async, [&] {                                                               \
        remove;                                                                                                        \
        return left.load();                                                                                            \
    });                                                                                                                \
    QCOMPARE(removing.wait_for(20ms), std::future_status::timeout);                                                    \
    leave.open();                                                                                                      \
    QVERIFY(removing.get())

void tst_GridObservers::removalWaitsForACallOnAnotherThread()
{
    QW_VERIFY_WAITS(observers.remove(observer));
}

/// A call in progress may wait for the very thread that releases.
void tst_GridObservers::releaseWaitsForNobody()
{
    GridObservers observers;
    Observer observer;
    Gate inside, leave;
    observer.called = [&] {
        inside.open();
        leave.pass();
    };
    observers.add(observer);
    const auto calling = std::async(std::launch::async, [&] { callAll(observers); });
    inside.pass();
    observers.release();
    leave.open();
    calling.wait();
    callAll(observers);
    QCOMPARE(observer.calls.load(), 1);
}

void tst_GridObservers::removalAfterTheReleaseWaitsToo()
{
    GridObservers observers;
    Observer observer;
    Gate inside, leave;
    observer.called = [&] {
        observers.release(); // from within, so it does not wait
        inside.open();
        leave.pass();
    };
    observers.add(observer);
    const auto calling = std::async(std::launch::async, [&] { callAll(observers); });
    inside.pass();
    const auto removing = std::async(std::launch::async, [&] { observers.remove(observer); });
    QCOMPARE(removing.wait_for(20ms), std::future_status::timeout);
    leave.open();
    QCOMPARE(removing.wait_for(10s), std::future_status::ready);
}

void tst_GridObservers::removalOfAnotherDoesNotWait()
{
    GridObservers observers;
    Observer busy, other;
    Gate inside, leave;
    busy.called = [&] {
        inside.open();
        leave.pass();
    };
    observers.add(busy);
    observers.add(other);
    const auto calling = std::async(std::launch::async, [&] { callAll(observers); });
    inside.pass();
    observers.remove(other);
    leave.open();
    calling.wait();
    QCOMPARE(other.calls.load(), 0);
}

void tst_GridObservers::mayRemoveEachOtherOnTwoThreads()
{
    GridObservers firstGrid, secondGrid;
    GridObservers observers;
    Observer first, second;
    Gate firstInside, secondInside;
    const std::thread::id main = std::this_thread::get_id();
    observers.add(first);
    observers.add(second);
    first.called = [&] {
        if (std::this_thread::get_id() == main)
            return;
        firstInside.open();
        secondInside.pass();
        observers.remove(second);
    };
    second.called = [&] {
        secondInside.open();
        firstInside.pass();
        observers.remove(first);
    };
    auto calling = std::async(std::launch::async, [&] { callAll(observers); });
    firstInside.pass();
    callAll(observers); // passes the first, ends up in the second
    QCOMPARE(calling.wait_for(10s), std::future_status::ready);
    QVERIFY(!observers.has(first));
    QVERIFY(!observers.has(second));
}

void tst_GridObservers::mayComeAndGoWhileTheyAreCalled()
{
    GridObservers observers;
    Observer staying;
    observers.add(staying);
    std::atomic<bool> stop = false;
    const auto calling = std::async(std::launch::async, [&] {
        while (!stop)
            callAll(observers);
    });
    for (int i = 0; i < 500; ++i) {
        auto passing = std::make_unique<Observer>();
        observers.add(*passing);
        observers.remove(*passing); // and may be destroyed now
    }
    stop = true;
    calling.wait();
    QVERIFY(observers.has(staying));
}

QTEST_APPLESS_MAIN(tst_GridObservers)
#include "tst_GridObservers.moc"
