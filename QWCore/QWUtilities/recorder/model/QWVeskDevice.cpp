#include "QWVeskDevice.h"

#include "QWVeskRecording.h"
#include "RecordingListReader.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/network/UrlLoader.h>

#include <QVariantMap>

#include <array>
#include <cstddef>
#include <functional>
#include <new>

#include <netinet/in.h>

namespace
{
/// How recorders announce themselves: what their names begin with, and where the owner's own name begins, behind " on
/// ".
struct RecorderEdition
{
    const char *prefix;
    qsizetype nameBegin;
    bool isBlue;
};

constexpr std::array<RecorderEdition, 2> recorderEditions{{{"Vesk", 8, false}, {"Blue Vesk", 13, true}}};

const RecorderEdition *recorderEditionOf(const QString &serviceName)
{
    for (const RecorderEdition &edition : recorderEditions)
        if (serviceName.startsWith(QLatin1String(edition.prefix)))
            return &edition;
    return nullptr;
}

/// @p serviceName from @p begin on. Half a character at its beginning is left out; where nothing is left, all of it.
QString recorderName(const QString &serviceName, qsizetype begin)
{
    QString name = serviceName.mid(begin);
    if (!name.isEmpty() && name.front().isLowSurrogate())
        name.remove(0, 1);
    return name.isEmpty() ? serviceName : name;
}

/// The IPv4 address in raw socket address @p address, of whichever family it is: an IPv6 one has its flow label there.
QString dottedAddress(const QByteArray &address)
{
    constexpr qsizetype begin = offsetof(sockaddr_in, sin_addr);
    if (address.size() < begin + static_cast<qsizetype>(sizeof(in_addr)))
        return {};
    const auto byte = [&](qsizetype i) { return QString::number(static_cast<quint8>(address[begin + i])); };
    return byte(0) + u'.' + byte(1) + u'.' + byte(2) + u'.' + byte(3);
}
} // namespace

bool QWVeskDevice::isRecorder(const platform::NetService &service)
{
    return recorderEditionOf(service.name());
}

std::shared_ptr<QWVeskDevice>
QWVeskDevice::deviceWithNetServiceBrowser(const std::shared_ptr<platform::NetService> &service,
                                          qw::RecorderBrowser &browser)
{
    return isRecorder(*service) ? std::make_shared<QWVeskDevice>(Making(), service, browser) : nullptr;
}

QWVeskDevice::QWVeskDevice(Making, const std::shared_ptr<platform::NetService> &service, qw::RecorderBrowser &browser)
    : m_browser(browser.link())
    , m_service(service)
{
    const QString serviceName = m_service->name();
    const RecorderEdition &edition = *recorderEditionOf(serviceName);
    m_name = recorderName(serviceName, edition.nameBegin);
    m_isBlue = edition.isBlue;
    m_service->setDelegate(this);
    m_service->resolveWithTimeout(resolveTimeout);
}

QWVeskDevice::~QWVeskDevice()
{
    stopResolving();
}

void QWVeskDevice::stopResolving()
{
    if (m_isDelegate)
        m_service->setDelegate(nullptr);
    m_isDelegate = false;
}

bool QWVeskDevice::invalid() const
{
    const std::lock_guard lock(m_lock);
    return m_invalid;
}

const qw::RecordingList &QWVeskDevice::list() const
{
    const std::lock_guard lock(m_lock);
    return m_list ? *m_list : m_emptyList;
}

void QWVeskDevice::netServiceDidResolveAddress(platform::NetService &service)
{
    const auto self = shared_from_this(); // the browser may let go of it
    const QList<QByteArray> addresses = service.addresses();
    const QString address = addresses.isEmpty() ? QString() : dottedAddress(addresses.front());
    if (address.isEmpty())
        return netServiceDidNotResolve(service, {});
    m_address = QStringLiteral("http://%1:%2").arg(address).arg(service.port());
    stopResolving();
    m_browser->loads.add(self);
}

/// netService:didNotResolve:
void QWVeskDevice::netServiceDidNotResolve(platform::NetService &, const QVariantMap &)
{
    const auto self = shared_from_this();
    QWApplicationLog::sharedLog().warningMessage(QW_LOG_CONTEXT("QWVeskDevice"), "did not resolve: " + m_name);
    m_isLooking = false;
    if (qw::RecorderBrowser *const owner = browser())
        owner->deviceDidNotResolve(*this);
}

void QWVeskDevice::startLoading()
{
    platform::System &system = platform::System::current();
    // What the work holds goes before its result is run, so the recorder never goes on the other thread.
    const bool started =
        system.backgroundWork().start([self = shared_from_this(), &loader = system.urlLoader()]() mutable {
            self->loadRecordings(loader);
            return [self = std::move(self)] { self->_loadingDidEnd(); };
        });
    if (!started) {
        _takeList(nullptr);
        _loadingDidEnd();
    }
}

void QWVeskDevice::loadRecordings(platform::UrlLoader &loader)
{
    try {
        _takeList(_loadedList(loader));
    } catch (const std::bad_alloc &) {
        _takeList(nullptr);
    }
}

std::unique_ptr<const qw::RecordingList> QWVeskDevice::_loadedList(platform::UrlLoader &loader)
{
    if (m_address.startsWith(
            QLatin1String("http://0.0.0.0:"))) // nobody's address, but here it would reach this machine
        return nullptr;
    platform::UrlRequest request;
    request.url = QUrl(m_address + "/list.plist");
    request.largestBody = largestList;
    const platform::UrlResponse response = loader.load(request);
    const std::function<bool()> isStopped = [this] { return this->isStopped(); };
    auto states = response.succeeded() ? qw::RecordingListReader::read(response.body, isStopped) : std::nullopt;
    auto claim = states ? m_browser->loads.claim(states->size()) : nullptr;
    if (!claim)
        return nullptr;
    auto list = std::make_unique<qw::RecordingList>();
    list->claim = std::move(claim);
    list->recordings.reserve(states->size());
    for (qw::RecordingState &state : *states)
        list->recordings.push_back(std::make_shared<QWVeskRecording>(std::move(state), weak_from_this()));
    list->keys = qw::RecordingKeys(list->recordings, isStopped);
    return isStopped() ? nullptr : std::move(list);
}

/// Null: there is none to be had.
void QWVeskDevice::_takeList(std::unique_ptr<const qw::RecordingList> list)
{
    const std::lock_guard lock(m_lock);
    m_invalid = !list;
    m_list = std::move(list);
}

void QWVeskDevice::_loadingDidEnd()
{
    m_isLooking = false;
    m_browser->loads.didEnd();
    if (qw::RecorderBrowser *const owner = browser())
        owner->refreshDevices();
}
