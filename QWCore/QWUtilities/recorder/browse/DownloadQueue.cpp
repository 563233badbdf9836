#include "DownloadQueue.h"

#include "TransferRate.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/appkit/Workspace.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Clock.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace qw
{

/// How the current download gets on.
class DownloadQueue::Pace
{
public:
    /// What is to be told now; none when the last was told a moment ago.
    std::optional<DownloadProgress> progressOf(const QWVeskRecording &recording)
    {
        const qint64 now = platform::System::current().clock().monotonicNanoseconds();
        m_rate.add(now, recording.downloaded());
        if (m_lastTold && now - *m_lastTold < tellingDistance)
            return std::nullopt;
        m_lastTold = now;
        DownloadProgress progress;
        progress.received = recording.downloaded();
        progress.rate = m_rate.bytesPerSecond();
        if (recording.downloadSize() != std::numeric_limits<quint64>::max())
            progress.expected = recording.downloadSize();
        if (progress.expected && progress.rate && *progress.rate > 0)
            progress.secondsLeft = bytesLeft(progress) / *progress.rate;
        return progress;
    }

private:
    static constexpr qint64 tellingDistance = 100'000'000; // nanoseconds

    static double bytesLeft(const DownloadProgress &progress)
    {
        return std::max(static_cast<double>(*progress.expected) - static_cast<double>(progress.received), 0.0);
    }

    TransferRate m_rate;
    std::optional<qint64> m_lastTold;
};

namespace
{
QString quotedTitle(const char *format, const QWVeskRecording &recording)
{
    return platform::formatted(platform::localized(QString::fromUtf8(format)), {recording.title()});
}

bool goesOnAfterFailure()
{
    return platform::System::current().userDefaults().boolean(QString::fromUtf16(DownloadQueue::goesOnAfterFailureKey));
}

/// Whether the host says in its Info.plist that it opens files with that extension, in exactly these letters.
bool hostOpens(const QString &extension)
{
    const QVariantList types =
        platform::System::current().mainBundle().objectForInfoDictionaryKey("CFBundleDocumentTypes").toList();
    return std::any_of(types.begin(), types.end(), [&](const QVariant &type) {
        return type.toMap().value("CFBundleTypeExtensions").toList().contains(extension);
    });
}

QString hostName()
{
    const QWApplication *const application = QWApplication::sharedApplication();
    return application ? application->name()
                       : platform::System::current().mainBundle().objectForInfoDictionaryKey("CFBundleName").toString();
}

void openSaved(const QString &path)
{
    platform::Workspace &workspace = platform::System::current().workspace();
    const bool isOpened = hostOpens(path.mid(path.lastIndexOf(u'.') + 1))
                              ? workspace.openFileWithApplication(path, hostName())
                              : workspace.openFile(path);
    if (!isOpened)
        QWApplicationLog::sharedLog().logContextFormatArguments(QWApplicationLog::Warning, nullptr,
                                                                "no program opens %@", {path});
}
} // namespace

DownloadQueue::DownloadQueue(DownloadQueueView &view)
    : m_view(view)
{
}

DownloadQueue::~DownloadQueue()
{
    abandon();
}

void DownloadQueue::save()
{
    if (m_isBusy || m_choosing)
        return;
    platform::OpenPanelRequest request;
    request.window = m_view.window();
    request.title = platform::localized("Save Recordings");
    request.directories = true;
    request.confirmTitle = platform::localized("Save");
    m_choosing = std::make_shared<Choosing>();
    platform::System::current().filePanels().beginOpenPanel(
        request, [this, choosing = std::weak_ptr(m_choosing)](int code, const QStringList &paths) {
            if (!choosing.expired())
                _openPanelDidEnd(code, paths);
        });
}

/// openPanelDidEnd:returnCode:contextInfo:
void DownloadQueue::_openPanelDidEnd(int code, const QStringList &paths)
{
    m_choosing.reset();
    if (code != platform::FilePanels::OK || paths.isEmpty())
        return;
    Recordings recordings = m_view.selectedRecordings();
    if (recordings.empty()) // the recorder has gone meanwhile
        return;
    m_directory = paths.front();
    if (const RecordingFormat *const format = RecordingFormats::withTitle(m_view.selectedFormatTitle()))
        m_format = QString::fromLatin1(format->code);
    m_isBusy = true;
    m_life = std::make_shared<Life>();
    _enqueue(recordings);
    _announceFirst();
    m_view.beginProgressSheet();
    m_view.setWindowCanHide(false);
    _startFirst();
}

void DownloadQueue::_enqueue(const Recordings &recordings)
{
    for (const auto &recording : recordings) {
        m_queue.push_back(recording);
        if (auto device = recording->device(); std::find(m_devices.begin(), m_devices.end(), device) == m_devices.end())
            m_devices.push_back(std::move(device));
    }
    m_stop = false;
}

void DownloadQueue::_announceFirst()
{
    m_view.setProgressText(quotedTitle("Downloading “%@”...", *m_queue.front()));
    m_view.setProgress(0);
}

void DownloadQueue::_startFirst()
{
    m_pace = std::make_unique<Pace>();
    m_queue.front()->downloadToAs(m_directory, m_format);
}

void DownloadQueue::stop()
{
    m_stop = true;
}

void DownloadQueue::close()
{
    if (m_isWaiting || m_stop)
        abandon();
    else
        stop();
}

void DownloadQueue::tryAgain()
{
    if (!m_isWaiting || !m_queue.empty()) // what waits after a failure has its take in the queue still
        return;
    Recordings recordings;
    for (FailedDownload &failure : std::exchange(m_failures, {}))
        recordings.push_back(std::move(failure.recording));
    m_isWaiting = false;
    _enqueue(recordings);
    _announceFirst();
    _startFirst();
}

void DownloadQueue::abandon()
{
    m_choosing.reset();
    if (!m_queue.empty())
        m_queue.front()->cancelDownload();
    m_queue.clear();
    if (m_isBusy)
        _end();
}

bool DownloadQueue::recordingUpdateProgress(QWVeskRecording &recording, float fraction)
{
    if (!_isCurrent(recording))
        return false;
    m_view.setProgress(std::clamp(static_cast<double>(fraction), 0.0, 1.0));
    if (const auto progress = m_pace->progressOf(recording))
        m_view.setProgressDetails(*progress);
    return m_stop;
}

void DownloadQueue::recordingDidStopDownloading(QWVeskRecording &recording)
{
    if (!_isCurrent(recording))
        return;
    m_queue.resize(1); // what is done with the last one is done with one that was stopped
    recordingDidFinishDownloading(recording);
}

void DownloadQueue::recordingDidFinishDownloading(QWVeskRecording &recording)
{
    if (!_isCurrent(recording))
        return;
    m_view.setProgress(1);
    m_queue.pop_front();
    const std::weak_ptr<Life> life = m_life;
    if (m_view.opensAfterSave())
        openSaved(recording.downloadPath()); // after a stop, too, and whatever name was taken instead
    if (!life.expired())                     // the host may have let the user do anything meanwhile
        _proceed();
}

void DownloadQueue::recordingDidFailDownloading(QWVeskRecording &recording, const QString &reason)
{
    if (!_isCurrent(recording))
        return;
    m_failures.push_back({m_queue.front(), reason});
    if (goesOnAfterFailure()) {
        m_queue.pop_front();
        if (m_stop)
            m_queue.clear();
        _proceed();
        return;
    }
    m_isWaiting = true;
    const QString line = quotedTitle("“%@” was not saved.", recording) + u' ' + reason + u' ' +
                         platform::localized("Press Escape to return to the window.");
    m_view.showFailure(line);
}

/// A host may download a take by itself, without the queue.
bool DownloadQueue::_isCurrent(const QWVeskRecording &recording) const
{
    return m_isBusy && !m_isWaiting && !m_queue.empty() && m_queue.front().get() == &recording;
}

void DownloadQueue::_proceed()
{
    if (!m_queue.empty()) {
        _announceFirst();
        _startFirst();
    } else if (m_failures.empty()) {
        _end();
    } else {
        m_isWaiting = true;
        m_view.showFailures(m_failures);
    }
}

void DownloadQueue::_end()
{
    m_isBusy = false;
    m_life.reset();
    m_isWaiting = false;
    m_failures.clear();
    m_devices.clear();
    m_directory.clear();
    m_format.clear();
    m_view.endProgressSheet();
    m_view.setWindowCanHide(true);
}

} // namespace qw
