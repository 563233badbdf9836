#pragma once

#include "DownloadQueueView.h"
#include "QWUtilities/recorder/model/QWVeskDevice.h"

#include <QWUtilities/qwutilities_private.h>

#include <QString>

#include <deque>
#include <memory>
#include <vector>

namespace qw
{

/// Saves takes, one after the other. Holds the takes and their recorders until it is through. Main thread.
class QWUTILITIES_TEST_EXPORT DownloadQueue
{
public:
    /// The user's default that lets the queue go on after a failure; off unless set.
    static constexpr char16_t goesOnAfterFailureKey[] = u"QWVeskBrowserContinuesAfterFailure";

    /// @p view must outlive the queue.
    explicit DownloadQueue(DownloadQueueView &view);

    /// As abandon().
    ~DownloadQueue();
    DownloadQueue(const DownloadQueue &) = delete;
    DownloadQueue &operator=(const DownloadQueue &) = delete;

    /// save: lets the user choose a folder, then saves what is selected by then there; nothing is begun when he leaves
    /// the chooser or nothing is left selected. Does nothing while the queue is not empty or a folder is being chosen.
    void save();

    /// stop: the next piece of data ends the queue. Does nothing after a failure.
    void stop();

    /// Escape, or the sheet's close: as stop(); after a failure, and where a stop was asked for already and no data has
    /// come since, the queue is emptied and the window given back.
    void close();

    /// Starts what failed once more, after DownloadQueueView::showFailures().
    void tryAgain();

    /// The window closes or the application ends: cancels the download, leaving no partial file, empties the queue and
    /// ends the sheet.
    void abandon();

    /// First is the current one.
    const std::deque<std::shared_ptr<QWVeskRecording>> &recordings() const { return m_queue; }

    /// From beginProgressSheet() to endProgressSheet().
    bool isBusy() const { return m_isBusy; }

    /// What failed and was gone past, or, of a queue that waits, failed last.
    const std::vector<FailedDownload> &failures() const { return m_failures; }

    /// @{
    /// See RecorderBrowser, whose calls are to be passed on.
    bool recordingUpdateProgress(QWVeskRecording &recording, float fraction);
    void recordingDidFinishDownloading(QWVeskRecording &recording);
    void recordingDidStopDownloading(QWVeskRecording &recording);
    void recordingDidFailDownloading(QWVeskRecording &recording, const QString &reason);
    /// @}

private:
    using Recordings = DownloadQueueView::Recordings;

    class Pace;
    struct Choosing
    {
    };
    struct Life
    {
    };

    void _openPanelDidEnd(int code, const QStringList &paths);
    void _enqueue(const Recordings &recordings);
    void _announceFirst();
    void _startFirst();
    bool _isCurrent(const QWVeskRecording &recording) const;
    void _proceed();
    void _end();

    DownloadQueueView &m_view;
    std::deque<std::shared_ptr<QWVeskRecording>> m_queue;
    QString m_directory;
    QString m_format;
    bool m_stop = false;
    bool m_isBusy = false;
    bool m_isWaiting = false;                             ///< After a failure.
    std::vector<std::shared_ptr<QWVeskDevice>> m_devices; ///< Recorders of the takes in the queue.
    std::vector<FailedDownload> m_failures;
    std::shared_ptr<Life> m_life; ///< While it is busy, another each time: the host's code may end it at any call.
    std::unique_ptr<Pace> m_pace; ///< Of the current download.
    std::shared_ptr<Choosing>
        m_choosing; ///< While a folder is being chosen; its end is heard as long as this is there.
};

} // namespace qw
