#pragma once

#include "DownloadFailure.h"

#include <QObject>

#include <atomic>
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

    /// A file that is not about to get its name never gets it. Waits for nothing. Any thread.
    void cancel() { m_isCancelled = true; }
    bool isCancelled() const { return m_isCancelled; }

Q_SIGNALS:
    void told();     ///< There is more to hear; not once for each.
    void accepted(); ///< By the main thread, after Whole: the file may have its name.

private:
    std::atomic<bool> m_isCancelled = false;
    std::mutex m_mutex; ///< Guards the events.
    std::deque<DownloadEvent> m_events;
};

} // namespace platform
