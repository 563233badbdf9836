#include "GridObservers.h"

#include <algorithm>

namespace qw
{

namespace
{
bool contains(const std::vector<QWMonomeRemoteObserver *> &list, const QWMonomeRemoteObserver *observer)
{
    return std::find(list.begin(), list.end(), observer) != list.end();
}
} // namespace

void GridObservers::add(QWMonomeRemoteObserver &observer)
{
    const std::lock_guard guard(m_mutex);
    if (!m_list || contains(*m_list, &observer))
        return;
    List list(*m_list);
    list.push_back(&observer);
    m_list = std::make_shared<const List>(std::move(list));
}

void GridObservers::remove(QWMonomeRemoteObserver &observer)
{
    std::unique_lock lock(m_mutex);
    if (m_list && contains(*m_list, &observer)) {
        List list(*m_list);
        std::erase(list, &observer);
        m_list = std::make_shared<const List>(std::move(list));
    }
    _waitForCalls(lock, &observer);
}

bool GridObservers::has(const QWMonomeRemoteObserver &observer) const
{
    const auto list = _list();
    return list && contains(*list, &observer);
}

void GridObservers::release()
{
    const std::lock_guard guard(m_mutex);
    m_list.reset();
}

std::shared_ptr<const GridObservers::List> GridObservers::_list() const
{
    const std::lock_guard guard(m_mutex);
    return m_list;
}

/// False when @p observer was removed since @p list was taken.
bool GridObservers::_begin(const List &list, QWMonomeRemoteObserver *observer)
{
    const std::lock_guard guard(m_mutex);
    if (m_list.get() != &list && (!m_list || !contains(*m_list, observer)))
        return false;
    m_calls.push_back({std::this_thread::get_id(), observer});
    return true;
}

/// Calls of one thread end in reverse order.
void GridObservers::_end()
{
    const std::lock_guard guard(m_mutex);
    const auto last = std::find_if(m_calls.rbegin(), m_calls.rend(),
                                   [](const Call &call) { return call.thread == std::this_thread::get_id(); });
    m_calls.erase(std::next(last).base());
    m_ended.notify_all();
}

/// Whether this thread is inside a call. The mutex is held.
bool GridObservers::_isCalling() const
{
    return std::any_of(m_calls.begin(), m_calls.end(),
                       [](const Call &call) { return call.thread == std::this_thread::get_id(); });
}

void GridObservers::_waitForCalls(std::unique_lock<std::mutex> &lock, const QWMonomeRemoteObserver *observer)
{
    if (_isCalling())
        return;
    m_ended.wait(lock, [&] {
        return std::none_of(m_calls.begin(), m_calls.end(),
                            [observer](const Call &call) { return call.observer == observer; });
    });
}

} // namespace qw
