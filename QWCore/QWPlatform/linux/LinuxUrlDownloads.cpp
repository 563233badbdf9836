#include "LinuxUrlDownloads.h"

#include "../foundation/Localization.h"
#include "LinuxUrlTransfer.h"
#include "NetworkRequests.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>

namespace platform
{

namespace
{
/// What the caller holds: cancels its transfer when it goes.
class LinuxUrlDownload : public UrlDownload
{
public:
    explicit LinuxUrlDownload(LinuxUrlTransfer *transfer)
        : m_transfer(transfer)
    {
    }

    ~LinuxUrlDownload() override { LinuxUrlDownload::cancel(); }

    void cancel() override
    {
        if (m_transfer)
            m_transfer->cancel();
    }

private:
    QPointer<LinuxUrlTransfer> m_transfer; ///< Null once it has ended.
};
} // namespace

LinuxUrlDownloads::LinuxUrlDownloads()
    : LinuxUrlDownloads(std::chrono::seconds(30))
{
}

LinuxUrlDownloads::LinuxUrlDownloads(std::chrono::milliseconds inactivity)
    : m_inactivity(inactivity)
{
}

LinuxUrlDownloads::~LinuxUrlDownloads()
{
    delete m_network;
}

std::unique_ptr<UrlDownload> LinuxUrlDownloads::start(const QUrl &url, const QString &destination,
                                                      UrlDownloadObserver &observer)
{
    auto *transfer = new LinuxUrlTransfer(destination, m_inactivity, observer);
    auto download = std::make_unique<LinuxUrlDownload>(transfer);
    if (isLoadable(url))
        transfer->start(_manager(), url);
    else
        transfer->failLater(localized("The address cannot be loaded."));
    return download;
}

QNetworkAccessManager &LinuxUrlDownloads::_manager()
{
    if (!m_network)
        m_network = new QNetworkAccessManager(QCoreApplication::instance());
    return *m_network;
}

} // namespace platform
