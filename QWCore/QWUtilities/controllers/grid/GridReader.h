#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace qw
{

/// The thread that reads a grid. It stops of its own accord some time after it was cancelled; nobody waits for that.
class GridReader
{
public:
    /// Starts @p body on a thread of its own; the reader it is given is this one.
    explicit GridReader(std::function<void(GridReader &)> body);

    /// As end(), then waits for the body. Not on the reader's own thread.
    ~GridReader();

    GridReader(const GridReader &) = delete;
    GridReader &operator=(const GridReader &) = delete;

    /// Asks the body to stop; it sees it after its next rest. Any thread.
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }

    /// Cancels and lets the body end at once, without its rests. Any thread.
    void end();

    /// Requested by end().
    const std::stop_token &ending() const { return m_ending; }

    /// Whether the body has returned; the reader can then be destroyed without waiting.
    bool hasFinished() const { return m_finished; }

    /// hasFinished(), after @p time at most. Any other thread.
    bool waitForEnd(std::chrono::milliseconds time);

private:
    std::atomic<bool> m_cancelled = false;
    std::atomic<bool> m_finished = false;
    std::mutex m_mutex; ///< Guards the change of m_finished.
    std::condition_variable m_end;
    std::stop_source m_stop;
    const std::stop_token m_ending = m_stop.get_token();
    std::thread m_thread; ///< Last: it starts when all else is there.
};

} // namespace qw
