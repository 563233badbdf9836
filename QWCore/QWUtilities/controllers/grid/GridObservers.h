#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class QWMonomeRemoteObserver;

namespace qw
{

/// Observers in order of addition, called from several threads. Nothing is locked during a call.
///
/// Who removes an observer waits until no other thread is calling it, so that it may be destroyed then. A removal from
/// within a call waits for nobody: two observers that remove each other would wait for ever.
class GridObservers
{
public:
    /// Adding an observer that is there does nothing; neither does adding one after release().
    void add(QWMonomeRemoteObserver &observer);

    /// Waits for calls of @p observer also when it is not in the list.
    void remove(QWMonomeRemoteObserver &observer);
    bool has(const QWMonomeRemoteObserver &observer) const;

    /// Removes all for good. Waits for nobody: who is inside a call may wait for the thread that releases.
    void release();

    /// Calls those that are there now and still are when their turn comes.
    template <class Function>
    void each(const Function &call)
    {
        const auto list = _list();
        if (!list)
            return;
        for (QWMonomeRemoteObserver *observer : *list) {
            if (!_begin(*list, observer))
                continue;
            const Ending ending(*this);
            call(*observer);
        }
    }

private:
    using List = std::vector<QWMonomeRemoteObserver *>;

    struct Call
    {
        std::thread::id thread;
        const QWMonomeRemoteObserver *observer;
    };

    struct Ending
    {
        explicit Ending(GridObservers &observers)
            : m_observers(observers)
        {
        }
        ~Ending() { m_observers._end(); }
        Ending(const Ending &) = delete;
        Ending &operator=(const Ending &) = delete;

        GridObservers &m_observers;
    };

    std::shared_ptr<const List> _list() const;
    bool _begin(const List &list, QWMonomeRemoteObserver *observer);
    void _end();
    bool _isCalling() const;
    void _waitForCalls(std::unique_lock<std::mutex> &lock, const QWMonomeRemoteObserver *observer);

    mutable std::mutex m_mutex; ///< Guards the rest.
    std::condition_variable m_ended;
    std::shared_ptr<const List> m_list = std::make_shared<List>(); ///< Copied on change; null after release().
    std::vector<Call> m_calls;                                     ///< In progress.
};

} // namespace qw
