#pragma once

#include <QWPlatform/network/transfers/UrlDownload.h>

#include <QFile>
#include <QStringList>

#include <functional>
#include <memory>

/// Writes down what it hears; may drop the download in any call.
class DownloadListener : public platform::UrlDownloadObserver
{
public:
    void start(platform::UrlDownloads &downloads, const QUrl &url, const QString &destination, bool overwrite = true)
    {
        download = downloads.start({.url = url, .destination = destination, .overwrite = overwrite}, *this);
    }

    void downloadDidReceiveResponse(qint64 length) override
    {
        received = 0;
        expected = length;
        note("response");
    }

    void downloadDidReceiveDataOfLength(qint64 length) override
    {
        received += length;
        ++pieces;
        if (calls.isEmpty() || calls.back() != u"data")
            calls += "data";
        hear("data");
    }

    void downloadDidCreateDestination(const QString &place) override
    {
        path = place;
        note("destination");
    }

    void downloadDidFinish() override { note("finish"); }

    void downloadDidFailWithError(const QString &description) override
    {
        failure = description;
        note("fail");
    }

    bool ended() const { return calls.contains("finish") || calls.contains("fail"); }

    QStringList calls;
    qint64 expected = -2;
    qint64 received = 0; ///< Since the last response.
    int pieces = 0;      ///< Calls that told of data.
    QString path;        ///< Where it is instead; "" for where it was asked to be.
    QString failure;
    std::function<void(const QString &call)> whenHeard;
    QString dropAt; ///< The call in which the download is destroyed.
    std::unique_ptr<platform::UrlDownload> download;

private:
    void note(const QString &call)
    {
        calls += call;
        hear(call);
    }

    void hear(const QString &call)
    {
        if (whenHeard)
            whenHeard(call);
        if (call == dropAt)
            download.reset();
    }
};

inline QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<none>");
}
