#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <atomic>
#include <deque>
#include <memory>

class QWVeskDevice;

namespace qw
{

/// The loads of the lists of one browser's recorders, since a network may announce any number of recorders with lists
/// of any length: a few at a time, and a limit for what all hold together.
class QWUTILITIES_TEST_EXPORT ListLoads
{
public:
    static constexpr int mostAtOnce = 4;
    static constexpr size_t mostTakes = 400'000; ///< In all lists.

    ListLoads();
    ~ListLoads();
    ListLoads(const ListLoads &) = delete;
    ListLoads &operator=(const ListLoads &) = delete;

    /// Lets the recorder load, now or when others have ended; one that is stopped before loses its turn. Main thread.
    void add(const std::shared_ptr<QWVeskDevice> &device);

    /// One that was let load has ended. Main thread.
    void didEnd();

    /// Room for so many takes, given back when the claim goes; null when there is not as much. Any thread.
    std::shared_ptr<const void> claim(size_t takes);

    /// Nobody wants any list any more. Main thread.
    void end();
    bool hasEnded() const { return m_hasEnded; } ///< Any thread.

private:
    void _startNext();

    std::deque<std::shared_ptr<QWVeskDevice>> m_waiting;
    int m_running = 0;
    std::shared_ptr<std::atomic<size_t>> m_room; ///< For takes; claims may outlive the loads.
    std::atomic<bool> m_hasEnded = false;
};

} // namespace qw
