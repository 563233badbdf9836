#pragma once

#include "QWPlatform/devices/input/HidQueue.h"
#include "RemoteKeys.h"

#include <QByteArray>
#include <QObject>

#include <deque>
#include <set>
#include <vector>

class QSocketNotifier;

namespace platform
{

class InputDevice;

/// Reads the device's events when the event loop says that there are some. QObject for QPointer's sake.
class LinuxRemoteReceiverQueue : public QObject, public HidQueue
{
public:
    explicit LinuxRemoteReceiverQueue(std::shared_ptr<InputDevice> device);
    ~LinuxRemoteReceiverQueue() override;

    bool create(int depth) override;
    bool addElement(quint32 cookie) override;
    bool createAsyncEventSource() override; ///< Fails in a thread without an event loop.
    bool setEventCallout(HidCallback callback, void *target, void *refcon) override;
    void addSourceToRunLoop() override;
    bool start() override;
    void stop() override;
    bool isStarted() const override;
    std::optional<HidEvent> nextEvent() override;

private:
    void _read();
    void _take(const char *bytes, size_t size);
    void _takeEvent(const input_event &event);
    void _add(const std::vector<RemoteElementValue> &values);
    void _catchUp();
    void _deviceGone();

    const std::shared_ptr<InputDevice> m_device;
    std::unique_ptr<QSocketNotifier> m_notifier; ///< The event source; enabled while started.
    HidCallback m_callback = nullptr;
    void *m_target = nullptr;
    void *m_refcon = nullptr;
    size_t m_depth = 0;
    std::set<quint32> m_cookies; ///< Of the elements that were added.
    std::deque<HidEvent> m_events;
    RemoteKeys m_keys;
    QByteArray m_rest;           ///< Begin of an event whose end was not read yet.
    bool m_isCatchingUp = false; ///< The kernel lost events; those up to the next report are not to be trusted.
    quint64 m_time = 0;          ///< Of the event at hand, in microseconds.
};

} // namespace platform
