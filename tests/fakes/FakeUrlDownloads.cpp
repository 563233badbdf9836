#include "FakeUrlDownloads.h"

#include <QFile>
#include <QFileInfo>

namespace
{
class FakeUrlDownload : public platform::UrlDownload
{
public:
    explicit FakeUrlDownload(std::shared_ptr<FakeUrlDownloads::Started> record)
        : m_record(std::move(record))
    {
    }

    ~FakeUrlDownload() override { cancel(); }
    void cancel() override { m_record->cancelled = !m_record->ended; }

private:
    std::shared_ptr<FakeUrlDownloads::Started> m_record;
};

QString freePath(const platform::UrlDownloadRequest &request)
{
    const QFileInfo file(request.destination);
    QString path = request.destination;
    for (int number = 2; !request.overwrite && QFile::exists(path); ++number)
        path = QString("%1/%2 %3.%4").arg(file.path(), file.completeBaseName()).arg(number).arg(file.suffix());
    return path;
}
} // namespace

std::unique_ptr<platform::UrlDownload> FakeUrlDownloads::start(const platform::UrlDownloadRequest &request,
                                                               platform::UrlDownloadObserver &observer)
{
    const auto record = std::make_shared<Started>(Started{request, {}});
    started.push_back(record);
    m_observer = &observer;
    m_received.clear();
    if (!request.url.isValid() || request.url.isRelative())
        QMetaObject::invokeMethod(
            &m_loop, [this, record, &observer] { _fail(*record, observer, "The address cannot be loaded."); },
            Qt::QueuedConnection);
    return std::make_unique<FakeUrlDownload>(record);
}

void FakeUrlDownloads::cancelAll()
{
    for (const auto &download : started)
        download->cancelled = !download->ended;
}

void FakeUrlDownloads::respond(qint64 expectedLength)
{
    if (_isRunning())
        m_observer->downloadDidReceiveResponse(expectedLength);
}

void FakeUrlDownloads::receive(const QByteArray &data)
{
    if (!_isRunning())
        return;
    m_received += data;
    m_observer->downloadDidReceiveDataOfLength(data.size());
}

void FakeUrlDownloads::finish()
{
    if (!_isRunning())
        return;
    const auto download = started.back(); // an observer may start the next one
    auto *const observer = m_observer;
    download->path = freePath(download->request);
    QFile file(download->path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(m_received) != m_received.size())
        return _fail(*download, *observer, file.errorString());
    file.close();
    if (download->path != download->request.destination)
        observer->downloadDidCreateDestination(download->path);
    if (download->cancelled)
        return;
    download->ended = true;
    observer->downloadDidFinish();
}

void FakeUrlDownloads::fail(const QString &localizedDescription)
{
    if (_isRunning())
        _fail(*started.back(), *m_observer, localizedDescription);
}

bool FakeUrlDownloads::_isRunning() const
{
    return !started.empty() && !started.back()->cancelled && !started.back()->ended;
}

void FakeUrlDownloads::_fail(Started &download, platform::UrlDownloadObserver &observer,
                             const QString &localizedDescription)
{
    if (download.cancelled || download.ended)
        return;
    download.ended = true;
    observer.downloadDidFailWithError(localizedDescription);
}
