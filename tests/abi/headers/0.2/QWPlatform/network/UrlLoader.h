#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QUrl>

namespace platform
{

/// What is asked for. A value that hosts fill in, so it stays open.
struct UrlRequest
{
    QUrl url;                                     ///< "http", "https" or "file".
    QByteArray method = "GET";                    ///< HTTP method, capitals.
    QList<QPair<QByteArray, QByteArray>> headers; ///< Names and values, in order.
    QByteArray body;                              ///< Sent as it stands; empty: none.
    qint64 largestBody = 4 * 1024 * 1024; ///< Bytes of the answer beyond which the load fails; enough for any list.
};

/// What came back. A value that hosts read, so it stays open.
struct UrlResponse
{
    int status = 0;  ///< HTTP status; 0 when no answer came; 200 for a file that was read.
    QByteArray body; ///< What was answered, of error answers too.
    QString error;   ///< Localized description of a failure of the connection; "" when an answer came whole.

    /// An answer came whole, and it is none of an error (status 200 to 399).
    bool succeeded() const { return error.isEmpty() && status >= 200 && status < 400; }
};

/// Loads addresses into memory. Any thread; a call blocks its thread.
class QWPLATFORM_EXPORT UrlLoader
{
public:
    virtual ~UrlLoader();

    /// Follows redirections; gives up 30 s after the last byte, and on an answer that is larger than the request
    /// allows.
    virtual UrlResponse load(const UrlRequest &request) = 0;

    /// Makes all running and later loads fail, and returns when none is running. Main thread, while the application
    /// object lives: see System::endWork().
    virtual void cancelAll() = 0;
};

} // namespace platform
