#include "LinuxRemoteReceiverQueue.h"

#include "InputDevice.h"

#include <QAbstractEventDispatcher>
#include <QPointer>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace platform
{

namespace
{
constexpr size_t eventsARead = 16; // an event gives one value at most, so a read fits into the queue

bool isOnlyInterrupted(ssize_t count)
{
    return count < 0 && (errno == EAGAIN || errno == EINTR);
}
} // namespace

LinuxRemoteReceiverQueue::LinuxRemoteReceiverQueue(std::shared_ptr<InputDevice> device)
    : m_device(std::move(device))
{
}

LinuxRemoteReceiverQueue::~LinuxRemoteReceiverQueue() = default;

bool LinuxRemoteReceiverQueue::create(int depth)
{
    m_depth = size_t(std::max(depth, 0));
    return m_depth > 0;
}

bool LinuxRemoteReceiverQueue::addElement(quint32 cookie)
{
    m_cookies.insert(cookie);
    return true;
}

bool LinuxRemoteReceiverQueue::createAsyncEventSource()
{
    if (!QAbstractEventDispatcher::instance())
        return false;
    m_notifier = std::make_unique<QSocketNotifier>(QSocketNotifier::Read);
    m_notifier->setSocket(m_device->descriptor());
    return true;
}

bool LinuxRemoteReceiverQueue::setEventCallout(HidCallback callback, void *target, void *refcon)
{
    m_callback = callback;
    m_target = target;
    m_refcon = refcon;
    return m_callback;
}

void LinuxRemoteReceiverQueue::addSourceToRunLoop()
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { _read(); });
}

bool LinuxRemoteReceiverQueue::start()
{
    m_notifier->setEnabled(true);
    return m_notifier->isEnabled();
}

void LinuxRemoteReceiverQueue::stop()
{
    m_notifier.reset();
}

bool LinuxRemoteReceiverQueue::isStarted() const
{
    return m_notifier && m_notifier->isEnabled();
}

std::optional<HidEvent> LinuxRemoteReceiverQueue::nextEvent()
{
    if (m_events.empty())
        return std::nullopt;
    HidEvent event = std::move(m_events.front());
    m_events.pop_front();
    return event;
}

/// The callbacks may destroy this queue.
void LinuxRemoteReceiverQueue::_read()
{
    std::array<char, eventsARead * sizeof(input_event)> buffer;
    const ssize_t count = m_device->read(buffer.data(), buffer.size());
    if (isOnlyInterrupted(count))
        return;
    if (count > 0)
        _take(buffer.data(), size_t(count));
    else
        _add(m_keys.releaseAll());
    const QPointer<LinuxRemoteReceiverQueue> self(this);
    if (!m_events.empty())
        m_callback(m_target, 0, m_refcon, this);
    if (count <= 0 && self)
        _deviceGone();
}

/// The kernel hands out whole events only; whatever else stands behind the descriptor need not.
void LinuxRemoteReceiverQueue::_take(const char *bytes, size_t size)
{
    m_rest.append(bytes, qsizetype(size));
    qsizetype done = 0;
    for (; m_rest.size() - done >= qsizetype(sizeof(input_event)); done += sizeof(input_event)) {
        input_event event;
        std::memcpy(&event, m_rest.constData() + done, sizeof event);
        _takeEvent(event);
    }
    m_rest.remove(0, done);
}

void LinuxRemoteReceiverQueue::_takeEvent(const input_event &event)
{
    m_time = quint64(event.input_event_sec) * 1'000'000 + quint64(event.input_event_usec);
    if (event.type == EV_SYN && event.code == SYN_DROPPED)
        m_isCatchingUp = true;
    else if (event.type == EV_SYN && event.code == SYN_REPORT && std::exchange(m_isCatchingUp, false))
        _catchUp();
    else if (event.type == EV_KEY && !m_isCatchingUp)
        if (const auto value = m_keys.translate(event.code, event.value))
            _add({*value});
}

void LinuxRemoteReceiverQueue::_add(const std::vector<RemoteElementValue> &values)
{
    for (const auto &[cookie, value] : values)
        if (m_cookies.contains(cookie) && m_events.size() < m_depth)
            m_events.push_back({.elementCookie = cookie, .value = value, .timeStamp = m_time});
}

void LinuxRemoteReceiverQueue::_catchUp()
{
    if (const auto down = m_device->keysDown())
        _add(m_keys.catchUp(*down));
}

/// The source goes first: a descriptor without a device is readable for ever.
void LinuxRemoteReceiverQueue::_deviceGone()
{
    const auto device = m_device; // outlives this queue
    stop();
    device->removed();
}

} // namespace platform
