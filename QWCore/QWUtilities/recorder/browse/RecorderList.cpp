#include "RecorderList.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWPlatform/network/services/NetService.h>
#include <QWPlatform/network/services/NetServices.h>

#include <algorithm>
#include <utility>

namespace qw
{

RecorderList::RecorderList(RecorderBrowser &browser, RecorderListView &view)
    : m_owner(browser)
    , m_view(view)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    m_patience.callOnTimeout(&m_patience, [this] { _patienceDidEnd(); });
}

RecorderList::~RecorderList()
{
    _endSearch();
}

void RecorderList::search()
{
    _endSearch();
    m_isWithoutNetService = false;
    m_browser = platform::SystemServices::current().netServices->makeBrowser();
    m_browser->setDelegate(this);
    m_patience.start();
    m_browser->searchForServicesOfTypeInDomain(QStringLiteral("_http._tcp."), QStringLiteral("local."));
    m_view.searchStateDidChange();
}

void RecorderList::stop()
{
    _endSearch();
    m_isWithoutNetService = false;
    m_view.searchStateDidChange();
}

void RecorderList::_endSearch()
{
    if (m_browser) {
        m_browser->setDelegate(nullptr);
        m_browser->stop();
    }
    m_browser.reset();
    m_patience.stop();
    m_stale.clear();
}

void RecorderList::reload()
{
    search();
    for (const auto &device : m_devices)
        m_stale.insert(device.get());
}

RecorderList::State RecorderList::state() const
{
    if (m_isWithoutNetService)
        return State::NoNetService;
    if (!m_browser)
        return State::Stopped;
    const bool isLooking = m_patience.isActive() || std::any_of(m_devices.begin(), m_devices.end(),
                                                                [](const auto &device) { return device->isLooking(); });
    return isLooking ? State::Looking : State::NoneFound;
}

std::shared_ptr<QWVeskDevice> RecorderList::selectedDevice() const
{
    return m_selectedDeviceIndex < m_devices.size() ? m_devices[m_selectedDeviceIndex] : nullptr;
}

void RecorderList::setSelectedDevice(const std::shared_ptr<QWVeskDevice> &device)
{
    const auto found = std::find(m_devices.begin(), m_devices.end(), device);
    m_selectedDeviceIndex = found == m_devices.end() ? notFound : static_cast<quint32>(found - m_devices.begin());
    m_view.selectedDeviceDidChange();
}

void RecorderList::refreshDevices()
{
    m_isRefreshingDevices = true;
    for (size_t i = m_devices.size(); i-- > 0;)
        if (m_devices[i]->invalid())
            _remove(m_devices.begin() + static_cast<std::ptrdiff_t>(i));
    std::shared_ptr<QWVeskDevice> device = selectedDevice(); // by the index that was stored before the removals
    m_view.reloadDevices();
    if (!device && !m_devices.empty())
        device = m_devices.front();
    setSelectedDevice(device);
    m_isRefreshingDevices = false;
    m_view.searchStateDidChange();
}

void RecorderList::deviceDidNotResolve(QWVeskDevice &device)
{
    if (m_fresh.contains(&device))
        m_owner.refreshDevices(); // else the takes of the one before it would go on being shown
    else
        m_view.searchStateDidChange();
}

void RecorderList::netServiceBrowserDidFindService(platform::NetServiceBrowser &,
                                                   const std::shared_ptr<platform::NetService> &service, bool)
{
    const auto known = _find(*service);
    if (known == m_devices.end())
        _add(service);
    else if (m_stale.contains(known->get()))
        _makeAfresh(*known, service);
    m_view.searchStateDidChange();
}

void RecorderList::netServiceBrowserDidRemoveService(platform::NetServiceBrowser &,
                                                     const std::shared_ptr<platform::NetService> &service,
                                                     bool moreComing)
{
    const auto known = _find(*service);
    if (known != m_devices.end())
        _remove(known);
    if (!moreComing)
        m_owner.refreshDevices();
}

void RecorderList::netServiceBrowserDidNotSearch(platform::NetServiceBrowser &, const QVariantMap &)
{
    _endSearch();
    m_isWithoutNetService = true;
    m_view.searchStateDidChange();
}

/// A network may announce anything.
void RecorderList::_add(const std::shared_ptr<platform::NetService> &service)
{
    if (!QWVeskDevice::isRecorder(*service))
        return;
    if (m_devices.size() < mostDevices)
        m_devices.push_back(QWVeskDevice::deviceWithNetServiceBrowser(service, m_owner));
    else if (!std::exchange(m_hasToldOfTooMany, true))
        QWApplicationLog::sharedLog().warningMessage(QW_LOG_CONTEXT("RecorderList"),
                                                     "too many recorders, not listed: " + service->name());
}

RecorderList::Devices::iterator RecorderList::_find(const platform::NetService &service)
{
    return std::find_if(m_devices.begin(), m_devices.end(),
                        [&](const auto &device) { return platform::isSameService(device->service(), service); });
}

void RecorderList::_remove(Devices::iterator place)
{
    (*place)->stopLoading();
    m_stale.erase(place->get());
    m_fresh.erase(place->get());
    m_devices.erase(place);
}

void RecorderList::_makeAfresh(std::shared_ptr<QWVeskDevice> &device,
                               const std::shared_ptr<platform::NetService> &service)
{
    device->stopResolving(); // the service may be one and the same
    m_stale.erase(device.get());
    m_fresh.erase(device.get());
    const auto former = device;
    former->stopLoading();
    device = QWVeskDevice::deviceWithNetServiceBrowser(service, m_owner); // as its name is the same, it is one again
    m_fresh.insert(device.get());
    m_view.deviceWasMadeAfresh(*former, device);
}

void RecorderList::_patienceDidEnd()
{
    const bool dropsAny = !m_stale.empty();
    while (!m_stale.empty())
        _remove(std::find_if(m_devices.begin(), m_devices.end(),
                             [this](const auto &device) { return m_stale.contains(device.get()); }));
    if (dropsAny)
        m_owner.refreshDevices();
    else
        m_view.searchStateDidChange();
}

} // namespace qw
