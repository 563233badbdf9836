#pragma once

#include "QWUtilities/recorder/model/QWVeskDevice.h"
#include "RecorderListView.h"

#include <QWPlatform/network/services/NetServiceBrowser.h>
#include <QWUtilities/qwutilities_private.h>

#include <QTimer>

#include <chrono>
#include <memory>
#include <set>
#include <vector>

namespace qw
{

/// The recorders on the local network, in the order found, and which of them is selected. Looks for them between
/// search() and stop(). Main thread.
class QWUTILITIES_TEST_EXPORT RecorderList : private platform::NetServiceBrowserDelegate
{
public:
    using Devices = std::vector<std::shared_ptr<QWVeskDevice>>;

    static constexpr quint32 notFound = 0x7FFFFFFF;

    /// Further ones are not listed.
    static constexpr size_t mostDevices = 256;

    /// How long it looks before it says that there is none.
    static constexpr std::chrono::milliseconds patience{3000};

    enum class State
    {
        Stopped,      ///< Nobody searches.
        Looking,      ///< Not long enough yet, or a recorder still resolves or loads.
        NoneFound,    ///< Nothing is announced, or all that was is known; later ones still appear.
        NoNetService, ///< There is no network service to ask, or it has gone; search() or reload() tries again.
    };

    /// Both are told from the event loop and by calls below, and must outlive the list. @p browser is what recorders
    /// will tell; its refreshDevices() and deviceDidNotResolve() are to call those here.
    RecorderList(RecorderBrowser &browser, RecorderListView &view);
    ~RecorderList() override;

    /// Starts to look for recorders; a search that goes on is replaced. What is listed stays listed.
    void search();

    /// Ends the search. What is listed stays listed.
    void stop();

    /// Starts the search anew and makes each recorder that is announced afresh, in its place: takes that came since and
    /// another port are then seen. Those not announced any more leave the list when the search's patience ends.
    void reload();

    State state() const;

    /// May be set before search(); patience at first.
    void setPatience(std::chrono::milliseconds time) { m_patience.setInterval(time); }

    /// In the order found.
    const Devices &devices() const { return m_devices; }

    /// Index of the selected recorder, which may lie beyond the last; notFound for none.
    quint32 selectedDeviceIndex() const { return m_selectedDeviceIndex; }

    /// The recorder at that index, or null.
    std::shared_ptr<QWVeskDevice> selectedDevice() const;

    /// Null, and what is not listed, selects none.
    void setSelectedDevice(const std::shared_ptr<QWVeskDevice> &device);

    /// Drops recorders whose list could not be loaded, shows the rest and selects again by index, the first one where
    /// that is beyond the last. Deselects all takes.
    void refreshDevices();

    bool isRefreshingDevices() const { return m_isRefreshingDevices; }

    /// See RecorderBrowser.
    void deviceDidNotResolve(QWVeskDevice &device);

private:
    void netServiceBrowserDidFindService(platform::NetServiceBrowser &browser,
                                         const std::shared_ptr<platform::NetService> &service,
                                         bool moreComing) override;
    void netServiceBrowserDidRemoveService(platform::NetServiceBrowser &browser,
                                           const std::shared_ptr<platform::NetService> &service,
                                           bool moreComing) override;
    void netServiceBrowserDidNotSearch(platform::NetServiceBrowser &browser, const QVariantMap &errors) override;

    Devices::iterator _find(const platform::NetService &service);
    void _add(const std::shared_ptr<platform::NetService> &service);
    void _endSearch();
    void _remove(Devices::iterator place);
    void _makeAfresh(std::shared_ptr<QWVeskDevice> &device, const std::shared_ptr<platform::NetService> &service);
    void _patienceDidEnd();

    RecorderBrowser &m_owner;
    RecorderListView &m_view;
    std::unique_ptr<platform::NetServiceBrowser> m_browser;
    Devices m_devices;
    quint32 m_selectedDeviceIndex = notFound;
    bool m_isRefreshingDevices = false;
    bool m_isWithoutNetService = false;
    bool m_hasToldOfTooMany = false; ///< Once is enough.
    QTimer m_patience;
    std::set<const QWVeskDevice *> m_stale; ///< Listed ones that a reload has not met again yet.
    std::set<const QWVeskDevice *> m_fresh; ///< Listed ones that a reload put into another's place.
};

} // namespace qw
