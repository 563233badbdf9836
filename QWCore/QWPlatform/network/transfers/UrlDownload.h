#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QString>
#include <QUrl>

#include <memory>

namespace platform
{

/// Told of a download's progress on the main thread, never before the call that started it has returned. May destroy
/// the download in any of the calls.
class QWPLATFORM_SHARED_EXPORT UrlDownloadObserver
{
public:
    virtual ~UrlDownloadObserver();

    /// @p expectedLength in bytes, -1 when the server sends none. Comes again, and all that came before counts for
    /// nothing, when the file on the server changed while a lost connection was made anew.
    virtual void downloadDidReceiveResponse(qint64 expectedLength);

    /// Bytes that are new since the last call, which tells of many pieces at once.
    virtual void downloadDidReceiveDataOfLength(qint64 length);

    /// The file has another name than asked for: the real path of its place. Right before downloadDidFinish().
    virtual void downloadDidCreateDestination(const QString &path);

    /// The file is whole, closed and at its destination. The last call.
    virtual void downloadDidFinish();

    /// Connection failed, cut short, any status but success (redirections are followed), a file that is too large or
    /// could not be written (a full disk is named as such); the partial file is gone. The last call.
    virtual void downloadDidFailWithError(const QString &localizedDescription);
};

/// A running download. Destroying it cancels it.
class QWPLATFORM_SHARED_EXPORT UrlDownload
{
public:
    virtual ~UrlDownload();

    /// Ends the download, removes the partial file; the observer hears nothing more. Waits for no disk: a whole file
    /// that gets its name in this moment, after all of its data was heard and before the end was, keeps it.
    virtual void cancel() = 0;
};

/// What is downloaded to where.
struct UrlDownloadRequest
{
    QUrl url;            ///< One that cannot be loaded, an empty one too, gives a failed download without a request.
    QString destination; ///< Real path of the file; the folder is there. A file of this name appears when it is whole.

    /// False: whatever is there stays, also what appeared meanwhile. A free name is taken, "Take 1 2.wav" for
    /// "Take 1.wav", and one that is too long for the disk is shortened.
    bool overwrite = true;
};

/// Starts downloads to files. Main thread.
class QWPLATFORM_SHARED_EXPORT UrlDownloads
{
public:
    /// In bytes; a server that never ends must not fill the user's disk.
    static constexpr qint64 largestFile = qint64(16) << 30;

    virtual ~UrlDownloads();

    /// @p observer is not owned and must outlive the download.
    virtual std::unique_ptr<UrlDownload> start(const UrlDownloadRequest &request, UrlDownloadObserver &observer) = 0;

    /// Cancels all downloads; later ones never begin. While the application object lives: see System::endWork().
    virtual void cancelAll() = 0;
};

} // namespace platform
