#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <functional>
#include <memory>

namespace platform
{

/// One thread per piece of work, whose one result is handed to the main thread without waiting. The current System has
/// one; a host may make others.
class QWPLATFORM_EXPORT BackgroundWork
{
public:
    BackgroundWork();
    ~BackgroundWork(); ///< As end().
    BackgroundWork(const BackgroundWork &) = delete;
    BackgroundWork &operator=(const BackgroundWork &) = delete;

    /// Main thread. Runs @p work on a thread of its own, which returns what is then run on the main thread (an empty
    /// function: nothing). @p work must not touch System::current(); an exception that leaves it is logged.
    /// False, and logged, when there is no thread to be had or all has ended: @p work is then dropped.
    bool start(std::function<std::function<void()>()> work);

    /// Waits for all threads; results that were not delivered by then are dropped, and nothing can be started any more.
    /// Main thread.
    void end();

    /// Number of pieces whose thread has not ended or whose result was not delivered. Main thread.
    int running() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace platform
