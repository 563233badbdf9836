#pragma once

#include "DownloadFailure.h"

#include <QObject>

#include <deque>
#include <mutex>
#include <optional>

namespace platform
{

/// One thing that an observer is to hear.
struct DownloadEvent
{
    /// Whole is not for the observer: the file waits for its name until all before it was heard, since whoever hears
    /// may still cancel.
    enum class Kind
    {
        Response,
        Data,
        Whole,
        Destination,
        Finish,
        Failure
    };

    Kind kind;
    qint64 length = 0; ///< Response: of the whole file, -1 for unknown; Data: new bytes.
    QString path;      ///< Destination.
    DownloadFailure failure;
};

/// Between the thread of a download, which tells, and the main thread, on which this lives and which listens.
class DownloadReport : public QObject
{
    Q_OBJECT

public:
    /// Any thread. Bytes that nobody has heard of yet are added up, so that what waits stays small.
    void tell(const DownloadEvent &event);

    /// What is to be heard next. Main thread.
    std::optional<DownloadEvent> next();

    /// From when this returns on, whileWanted() does nothing. Main thread.
    void cancel();

    /// Runs @p work unless the download was cancelled, which waits for it; so it must be short. Any thread.
    template <class Work>
    void whileWanted(const Work &work)
    {
        const std::lock_guard lock(m_wanted);
        if (!m_isCancelled)
            work();
    }

Q_SIGNALS:
    void told();     ///< There is more to hear; not once for each.
    void accepted(); ///< By the main thread, after Whole: the file may have its name.

private:
    std::mutex m_wanted; ///< Guards what follows, and what must not cross with a cancelling.
    bool m_isCancelled = false;
    std::mutex m_mutex; ///< Guards the events.
    std::deque<DownloadEvent> m_events;
};

} // namespace platform
