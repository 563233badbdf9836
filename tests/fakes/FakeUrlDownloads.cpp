#include "FakeUrlDownloads.h"

#include <QDir>
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
} // namespace

std::unique_ptr<platform::UrlDownload> FakeUrlDownloads::start(const QUrl &url, const QString &destination,
                                                               platform::UrlDownloadObserver &observer)
{
    started.push_back(std::make_shared<Started>(Started{url, destination}));
    m_observer = &observer;
    m_received.clear();
    return std::make_unique<FakeUrlDownload>(started.back());
}

void FakeUrlDownloads::cancelAll()
{
    for (const auto &download : started)
        download->cancelled = !download->ended;
}

void FakeUrlDownloads::respond(qint64 expectedLength)
{
    if (auto *observer = _running())
        observer->downloadDidReceiveResponse(expectedLength);
}

void FakeUrlDownloads::receive(const QByteArray &data)
{
    m_received += data;
    if (auto *observer = _running())
        observer->downloadDidReceiveDataOfLength(data.size());
}

void FakeUrlDownloads::finish()
{
    auto *observer = _running();
    if (!observer)
        return;
    QDir().mkpath(QFileInfo(started.back()->destination).path());
    QFile file(started.back()->destination);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(m_received);
    file.close();
    started.back()->ended = true;
    observer->downloadDidFinish();
}

void FakeUrlDownloads::fail(const QString &localizedDescription)
{
    auto *observer = _running();
    if (!observer)
        return;
    started.back()->ended = true;
    observer->downloadDidFailWithError(localizedDescription);
}

platform::UrlDownloadObserver *FakeUrlDownloads::_running() const
{
    return started.empty() || started.back()->cancelled || started.back()->ended ? nullptr : m_observer;
}
