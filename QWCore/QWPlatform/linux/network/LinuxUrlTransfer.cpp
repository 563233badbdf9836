#include "LinuxUrlTransfer.h"

#include "QWPlatform/network/transfers/UrlDownload.h"

#include <QPointer>

#include <utility>

namespace platform
{

LinuxUrlTransfer::LinuxUrlTransfer(const UrlDownloadRequest &request, const LinuxUrlDownloads::Limits &limits,
                                   UrlDownloadObserver &observer)
    : m_observer(&observer)
    , m_report(std::make_shared<DownloadReport>())
    , m_thread(std::make_unique<DownloadThread>(request, limits, m_report))
{
    connect(m_report.get(), &DownloadReport::told, this, qOverload<>(&LinuxUrlTransfer::_deliver),
            Qt::QueuedConnection);
    connect(m_thread.get(), &QThread::finished, this, &QObject::deleteLater);
}

LinuxUrlTransfer::~LinuxUrlTransfer()
{
    cancel();
    m_thread->wait(m_deadline);
    if (m_thread->isRunning())
        m_thread.release(); // with all that it needs, for good: its disk hangs, and nothing can interrupt it
}

void LinuxUrlTransfer::start()
{
    m_thread->start();
}

void LinuxUrlTransfer::failLater(const QString &text)
{
    m_report->tell({DownloadEvent::Kind::Failure, 0, {}, {text, {}, 0}});
    deleteLater(); // after what was told
}

void LinuxUrlTransfer::cancel()
{
    m_observer = nullptr;
    m_report->cancel();
    m_thread->quit();
}

/// An observer may destroy this, or run an event loop in which more is delivered.
void LinuxUrlTransfer::_deliver()
{
    const QPointer<LinuxUrlTransfer> self(this);
    while (self && m_observer) {
        const auto event = m_report->next();
        if (!event)
            return;
        _deliver(*event);
    }
}

void LinuxUrlTransfer::_deliver(const DownloadEvent &event)
{
    using Kind = DownloadEvent::Kind;
    switch (event.kind) {
    case Kind::Response:
        return m_observer->downloadDidReceiveResponse(event.length);
    case Kind::Data:
        return m_observer->downloadDidReceiveDataOfLength(event.length);
    case Kind::Whole:
        return m_report->accepted();
    case Kind::Destination:
        return m_observer->downloadDidCreateDestination(event.path);
    case Kind::Finish:
        return std::exchange(m_observer, nullptr)->downloadDidFinish();
    case Kind::Failure:
        return std::exchange(m_observer, nullptr)->downloadDidFailWithError(descriptionOf(event.failure));
    }
}

} // namespace platform
