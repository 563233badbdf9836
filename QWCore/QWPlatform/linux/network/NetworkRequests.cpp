#include "NetworkRequests.h"

#include "QWPlatform/network/UrlLoader.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace platform
{

QString translated(const char *text)
{
    return QCoreApplication::translate("platform::UrlLoader", text);
}

bool isLoadable(const QUrl &url)
{
    const QString scheme = url.scheme();
    return url.isValid() && (scheme == u"http" || scheme == u"https" || scheme == u"file");
}

QNetworkRequest networkRequest(const UrlRequest &request)
{
    QNetworkRequest network(request.url);
    network.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    network.setRawHeader("Accept-Encoding", "identity");
    for (const auto &[name, value] : request.headers)
        network.setRawHeader(name, value);
    return network;
}

int statusOf(const QNetworkReply &reply)
{
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool fileWasRead = status == 0 && reply.url().isLocalFile() && reply.error() == QNetworkReply::NoError;
    return fileWasRead ? 200 : status;
}

qint64 expectedLength(const QNetworkReply &reply)
{
    bool ok = false;
    const qint64 length = reply.header(QNetworkRequest::ContentLengthHeader).toLongLong(&ok);
    return ok && length >= 0 ? length : -1;
}

bool failedOnTheWay(const QNetworkReply &reply)
{
    return reply.error() != QNetworkReply::NoError && statusOf(reply) < 400;
}

} // namespace platform
