#include "LinuxUrlDownloads.h"

#include "LinuxUrlTransfer.h"
#include "NetworkRequests.h"

#include <utility>

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
    : LinuxUrlDownloads(Limits{})
{
}

LinuxUrlDownloads::LinuxUrlDownloads(const Limits &limits)
    : m_limits(limits)
{
}

LinuxUrlDownloads::~LinuxUrlDownloads()
{
    LinuxUrlDownloads::cancelAll();
}

std::unique_ptr<UrlDownload> LinuxUrlDownloads::start(const UrlDownloadRequest &request, UrlDownloadObserver &observer)
{
    auto *transfer = new LinuxUrlTransfer(request, m_limits, observer);
    auto download = std::make_unique<LinuxUrlDownload>(transfer);
    std::erase_if(m_transfers, [](const auto &one) { return one.isNull(); });
    m_transfers.emplace_back(transfer);
    if (m_cancelled || !isLoadable(request.url))
        transfer->failLater("The address cannot be loaded.");
    else
        transfer->start();
    return download;
}

void LinuxUrlDownloads::cancelAll()
{
    m_cancelled = true;
    const auto transfers = std::exchange(m_transfers, {});
    for (const QPointer<LinuxUrlTransfer> &transfer : transfers)
        if (transfer)
            transfer->cancel();
    const QDeadlineTimer deadline(m_limits.quit);
    for (const QPointer<LinuxUrlTransfer> &transfer : transfers) {
        if (transfer)
            transfer->setDeadline(deadline);
        delete transfer.data();
    }
}

} // namespace platform
