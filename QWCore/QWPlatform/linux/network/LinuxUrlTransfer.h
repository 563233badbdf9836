#pragma once

#include "DownloadReport.h"
#include "DownloadThread.h"

#include <QDeadlineTimer>
#include <QObject>

#include <memory>

namespace platform
{

/// One download as the main thread sees it. Deletes itself from the event loop after its end, so that its observer may
/// let go of it at any time.
class LinuxUrlTransfer : public QObject
{
    Q_OBJECT

public:
    LinuxUrlTransfer(const UrlDownloadRequest &request, const LinuxUrlDownloads::Limits &limits,
                     UrlDownloadObserver &observer);

    /// Waits for the thread, which has nothing long to do any more unless its disk hangs.
    ~LinuxUrlTransfer() override;

    void start();

    /// Fails from the event loop, without a request.
    void failLater(const QString &text);

    /// The observer hears nothing more. The thread ends by itself; nobody waits for it here.
    void cancel();

    /// A thread that still runs then is left to itself when this goes.
    void setDeadline(const QDeadlineTimer &deadline) { m_deadline = deadline; }

private:
    void _deliver();
    void _deliver(const DownloadEvent &event);

    UrlDownloadObserver *m_observer; ///< Null once it has heard the last call or the download was cancelled.
    const std::shared_ptr<DownloadReport> m_report;
    std::unique_ptr<DownloadThread> m_thread;
    QDeadlineTimer m_deadline{QDeadlineTimer::Forever};
};

} // namespace platform
