#pragma once

#include "DownloadReport.h"
#include "DownloadThread.h"

#include <QObject>

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

    /// Waits for the thread, which has nothing long to do any more.
    ~LinuxUrlTransfer() override;

    void start();

    /// Fails from the event loop, without a request.
    void failLater(const QString &text);

    /// The observer hears nothing more. The thread ends by itself; nobody waits for it here.
    void cancel();

private:
    void _deliver();
    void _deliver(const DownloadEvent &event);

    UrlDownloadObserver *m_observer; ///< Null once it has heard the last call or the download was cancelled.
    DownloadReport m_report;
    DownloadThread m_thread;
};

} // namespace platform
