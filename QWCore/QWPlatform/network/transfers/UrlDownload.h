#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QString>

#include <memory>

class QUrl;

namespace platform
{

/// Told of a download's progress on the main thread, never before the call that started it has returned. May destroy
/// the download in any of the calls.
class QWPLATFORM_SHARED_EXPORT UrlDownloadObserver
{
public:
    virtual ~UrlDownloadObserver();

    /// @p expectedLength in bytes, -1 when the server sends none.
    virtual void downloadDidReceiveResponse(qint64 expectedLength);
    virtual void downloadDidReceiveDataOfLength(qint64 length);

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

    /// Ends the download, removes the partial file; the observer hears nothing more.
    virtual void cancel() = 0;
};

/// Starts downloads to files. Main thread.
class QWPLATFORM_SHARED_EXPORT UrlDownloads
{
public:
    /// In bytes; a server that never ends must not fill the user's disk.
    static constexpr qint64 largestFile = qint64(16) << 30;

    virtual ~UrlDownloads();

    /// Downloads @p url to the file @p destination, which is overwritten. @p observer is not owned and must outlive
    /// the download.
    virtual std::unique_ptr<UrlDownload> start(const QUrl &url, const QString &destination,
                                               UrlDownloadObserver &observer) = 0;

    /// Cancels all downloads; later ones never begin. While the application object lives: see System::endWork().
    virtual void cancelAll() = 0;
};

} // namespace platform
