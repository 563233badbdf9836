#pragma once

#include <QtGlobal>

class QNetworkReply;
class QNetworkRequest;
class QString;
class QUrl;

namespace platform
{

struct UrlRequest;

/// Qt's translations, since platform::localized() belongs to the main thread.
QString translated(const char *text);

/// True for the schemes that are loaded: http, https and file.
bool isLoadable(const QUrl &url);

/// The request as Qt takes it. Compressed answers are declined, so that lengths are those of what arrives. Redirections
/// are answers like others.
QNetworkRequest networkRequest(const UrlRequest &request);

/// HTTP status; 200 for a file that was read, 0 when no answer came.
int statusOf(const QNetworkReply &reply);

/// Length of the body in bytes as announced; -1 when it is not.
qint64 expectedLength(const QNetworkReply &reply);

/// True when the exchange itself broke; an error that the server answered with is none.
bool failedOnTheWay(const QNetworkReply &reply);

} // namespace platform
