#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace qw
{

class GridReader;

/// The reader of the grid that is connected, and those before it that have not ended yet. Any thread.
class GridReaders
{
public:
    GridReaders();

    /// All have ended by then.
    ~GridReaders();
    GridReaders(const GridReaders &) = delete;
    GridReaders &operator=(const GridReaders &) = delete;

    /// A reader that goes on until it is cancelled; one that was not goes on beside it.
    void start(std::function<void(GridReader &)> body);

    /// Asks the reader started last to stop. Does not wait: it may be inside an observer that waits for this thread.
    void cancel();

    /// Waits for all; delivers queued calls meanwhile, since an observer may wait for one.
    void end();

private:
    std::mutex m_mutex; ///< Guards both below.
    std::unique_ptr<GridReader> m_readThread;
    std::vector<std::unique_ptr<GridReader>> m_formerReaders; ///< Cancelled, or of a grid that another replaced.
};

} // namespace qw
