#pragma once

#include "RecorderBrowser.h"
#include "RecordingList.h"

#include <QWPlatform/network/services/NetService.h>
#include <QWUtilities/qwutilities_private.h>

#include <QString>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

namespace platform
{
class UrlLoader;
}

/// A recorder on the local network. Resolves from the start on, then loads the list of its takes in the background; a
/// load holds its recorder. Main thread, except where it says otherwise; it is destroyed there, too.
class QWUTILITIES_TEST_EXPORT QWVeskDevice : private platform::NetServiceDelegate,
                                             public std::enable_shared_from_this<QWVeskDevice>
{
    struct Making // only deviceWithNetServiceBrowser() makes recorders
    {
    };

public:
    using Recordings = qw::RecordingList::Recordings;

    static constexpr std::chrono::milliseconds resolveTimeout{5000};
    static constexpr qint64 largestList = qint64(128) << 20; ///< Bytes: 100,000 takes and more.

    /// Whether what announces itself as @p service is one.
    static bool isRecorder(const platform::NetService &service);

    /// The recorder that announces itself as @p service, or none when that is no recorder.
    static std::shared_ptr<QWVeskDevice>
    deviceWithNetServiceBrowser(const std::shared_ptr<platform::NetService> &service, qw::RecorderBrowser &browser);

    QWVeskDevice(Making, const std::shared_ptr<platform::NetService> &service, qw::RecorderBrowser &browser);
    ~QWVeskDevice() override;
    QWVeskDevice(const QWVeskDevice &) = delete;
    QWVeskDevice &operator=(const QWVeskDevice &) = delete;

    /// Null once it has gone.
    qw::RecorderBrowser *browser() const { return m_browser->browser; }

    const platform::NetService &service() const { return *m_service; }

    /// "http://192.168.1.7:8123"; "" before it is resolved.
    const QString &address() const { return m_address; }

    /// What its owner called it: the service's name without "Vesk on ". Where nothing legible is left, the whole name.
    const QString &name() const { return m_name; }

    /// Whether it is of the edition that offers uncompressed formats only.
    bool isBlue() const { return m_isBlue; }

    /// Whether its list could not be loaded. Any thread.
    bool invalid() const;

    /// Its takes in the order of its list, with what they are searched and sorted by; empty until that is loaded, then
    /// as it is for good. Both stay where they are while the recorder lives. Any thread.
    const qw::RecordingList &list() const;
    const Recordings &recordings() const { return list().recordings; }

    /// Whether it resolves or loads.
    bool isLooking() const { return m_isLooking; }

    /// Hears no more from its service. What it has stays.
    void stopResolving();

    /// Lets go of a list that loads: there will be none. Nothing when it is there.
    void stopLoading() { m_isStopped = true; }
    bool isStopped() const { return m_isStopped || m_browser->loads.hasEnded(); } ///< Any thread.

    /// By ListLoads, once, when the address is known.
    void startLoading();

    /// Loads the list and waits for it; the browser is not told. Any thread, once, when the address is known.
    void loadRecordings(platform::UrlLoader &loader);

private:
    void netServiceDidResolveAddress(platform::NetService &service) override;
    void netServiceDidNotResolve(platform::NetService &service, const QVariantMap &errors) override;
    std::unique_ptr<const qw::RecordingList> _loadedList(platform::UrlLoader &loader);
    void _takeList(std::unique_ptr<const qw::RecordingList> list);
    void _loadingDidEnd();

    std::shared_ptr<qw::RecorderBrowserLink> m_browser;
    std::shared_ptr<platform::NetService> m_service;
    QString m_address; ///< Set before the load begins, which reads it.
    QString m_name;
    std::unique_ptr<const qw::RecordingList> m_list; ///< Null until it is loaded.
    const qw::RecordingList m_emptyList{};
    bool m_invalid = false;
    bool m_isBlue = false;
    mutable std::mutex m_lock; ///< Guards the list and invalid.
    bool m_isDelegate = true;  ///< Of the service.
    bool m_isLooking = true;
    std::atomic<bool> m_isStopped = false;
};
