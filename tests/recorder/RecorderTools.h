#pragma once

#include <QWUtilities/recorder/model/QWVeskDevice.h>
#include <QWUtilities/recorder/model/QWVeskRecording.h>

#include <fakes/FakeSystem.h>

#include <QWPlatform/foundation/PropertyList.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <arpa/inet.h>
#include <cstring>
#include <netinet/in.h>
#include <vector>

namespace recordertest
{

inline QByteArray rawAddress(const char *ipv4)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    inet_pton(AF_INET, ipv4, &address.sin_addr);
    return {reinterpret_cast<const char *>(&address), sizeof(address)};
}

/// A service that the test resolves.
class TestService : public platform::NetService
{
public:
    explicit TestService(QString name)
        : m_name(std::move(name))
    {
    }

    QString name() const override { return m_name; }
    QString type() const override { return "_http._tcp."; }
    QString domain() const override { return "local."; }
    void setDelegate(platform::NetServiceDelegate *newDelegate) override { delegate = newDelegate; }
    void resolveWithTimeout(std::chrono::milliseconds time) override { timeouts.push_back(time); }
    QList<QByteArray> addresses() const override { return m_addresses; }
    int port() const override { return m_port; }

    void resolve(const QList<QByteArray> &addresses, int port = 8123)
    {
        m_addresses = addresses;
        m_port = port;
        if (delegate)
            delegate->netServiceDidResolveAddress(*this);
    }

    platform::NetServiceDelegate *delegate = nullptr;
    std::vector<std::chrono::milliseconds> timeouts;

private:
    QString m_name;
    QList<QByteArray> m_addresses;
    int m_port = -1;
};

/// Notes what recorders and takes tell.
class NotingBrowser : public qw::RecorderBrowser
{
public:
    void refreshDevices() override { ++refreshes; }
    void deviceDidNotResolve(QWVeskDevice &device) override { unresolved.append(device.name()); }

    bool recordingUpdateProgress(QWVeskRecording &, float fraction) override
    {
        fractions.push_back(fraction);
        return stops;
    }

    void recordingDidFinishDownloading(QWVeskRecording &recording) override { finished.append(recording.title()); }
    void recordingDidStopDownloading(QWVeskRecording &recording) override { stopped.append(recording.title()); }
    void recordingDidFailDownloading(QWVeskRecording &, const QString &reason) override { failures.append(reason); }

    int refreshes = 0;
    QStringList unresolved;
    std::vector<float> fractions;
    bool stops = false;
    QStringList finished;
    QStringList stopped;
    QStringList failures;
};

/// The recorder announced as @p name, with a list of @p entries that has been loaded.
inline std::shared_ptr<QWVeskDevice> loadedDevice(FakeSystem &system, qw::RecorderBrowser &browser,
                                                  const QVariantList &entries, const QString &name = "Vesk on Studio")
{
    const auto service = std::make_shared<TestService>(name);
    auto device = QWVeskDevice::deviceWithNetServiceBrowser(service, browser);
    system.urlLoader.answer("http://192.0.2.7:8123/list.plist", platform::PropertyList::toXml(entries));
    service->resolve({rawAddress("192.0.2.7")});
    while (device->isLooking())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return device;
}

} // namespace recordertest
