#include "QWRemoteControl.h"

#include "QWRemoteControlListener.h"
#include "QWUtilities/controllers/remote/RemoteButtons.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/System.h>
#include <QWPlatform/devices/input/RemoteReceiver.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QCoreApplication>
#include <QVariantList>

#include <algorithm>
#include <optional>
#include <set>

using platform::System;
using platform::SystemServices;

namespace
{
constexpr int queueDepth = 30; // events

/// The child elements of the first of @p elements; none when it has none.
std::optional<QVariantList> childElements(const std::optional<QVariantList> &elements)
{
    if (!elements || elements->isEmpty())
        return std::nullopt;
    const QVariant children = elements->first().toMap().value("Elements");
    return children.typeId() == QMetaType::QVariantList ? std::optional(children.toList()) : std::nullopt;
}
} // namespace

class Q_DECL_HIDDEN QWRemoteControl::Private
{
public:
    explicit Private(QWRemoteControl &owner)
        : m_owner(owner)
    {
    }

    void _initQueue();
    void _destroyQueue();

    QWRemoteControl &m_owner;
    std::set<QWRemoteControlListener *> m_listeners;
    std::unique_ptr<platform::HidInterface> m_interface; ///< Null when released.
    std::unique_ptr<platform::HidQueue> m_queue;         ///< Null when not set up; set though a later step failed.

private:
    bool _openInterface();
    bool _setUpQueue();
    bool _addElements(const QVariantList &elements);
    bool _failed(const char *message, int line = __builtin_LINE()) const;

    void remoteControlEvent(qint32 result);
    void _handleEvent(const platform::HidEvent &event);
    void _buttonDown(unsigned button);
    void _buttonUp(unsigned button);
    template <class Call>
    void _forEachListener(Call call);
    void _receiverRemoved();

    static void _queueCallback(void *target, qint32 result, void *refcon, void *sender);
    static void _removalCallback(void *target, qint32 result, void *refcon, void *sender);
};

QWRemoteControl &QWRemoteControl::remoteControl()
{
    return System::current().shared<QWRemoteControl>([] { return new QWRemoteControl; });
}

QWRemoteControl::QWRemoteControl()
    : d(std::make_unique<Private>(*this))
{
    if (const auto *const application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &QWRemoteControl::applicationWillTerminate);
}

QWRemoteControl::~QWRemoteControl()
{
    d->_destroyQueue();
}

bool QWRemoteControl::addListener(QWRemoteControlListener *listener)
{
    if (d->m_listeners.insert(listener).second && !d->m_queue)
        d->_initQueue();
    return true;
}

bool QWRemoteControl::removeListener(QWRemoteControlListener *listener)
{
    d->m_listeners.erase(listener);
    if (d->m_listeners.empty() && d->m_queue)
        d->_destroyQueue();
    return true;
}

bool QWRemoteControl::hasListener(QWRemoteControlListener *listener) const
{
    return d->m_listeners.contains(listener);
}

bool QWRemoteControl::isActive() const
{
    return d->m_queue && d->m_queue->isStarted();
}

void QWRemoteControl::applicationWillTerminate()
{
    d->m_listeners.clear();
    d->_destroyQueue();
}

/// Each step only after the one before it. What was made before a step that fails is kept.
void QWRemoteControl::Private::_initQueue()
{
    auto &receiver = *SystemServices::current().remoteReceiver;
    const auto service = receiver.firstServiceMatching("AppleIRController");
    if (!service) {
        _failed("Finding the AppleIRController service failed");
        return;
    }
    auto plugin = receiver.createPlugin(*service);
    if (!plugin) {
        _failed("Creating the plugin for the remote failed");
        return;
    }
    m_interface = plugin->queryInterface(); // one that an earlier attempt left is given back here
    if (!m_interface || !_openInterface() || !_setUpQueue())
        return;
    m_queue->addSourceToRunLoop();
    plugin.reset();
    if (!m_queue->start())
        _failed("Starting the queue failed");
}

bool QWRemoteControl::Private::_openInterface()
{
    if (!m_interface->openExclusively()) {
        m_interface->close();
        m_interface.reset();
        return _failed("Attempting to sieze the remote failed");
    }
    m_interface->setRemovalCallback(&_removalCallback, nullptr, this);
    return true;
}

bool QWRemoteControl::Private::_setUpQueue()
{
    const auto elements = childElements(m_interface->copyMatchingElements());
    if (!elements)
        return _failed("Retrieving the remote interface elements failed");
    m_queue = m_interface->allocateQueue();
    if (!m_queue || !m_queue->create(queueDepth))
        return _failed("Creating the remote queue failed");
    if (!_addElements(*elements))
        return _failed("Adding elements to the remote queue failed");
    if (!m_queue->createAsyncEventSource())
        return _failed("Creating the event source for the remote failed");
    if (!m_queue->setEventCallout(&_queueCallback, nullptr, this))
        return _failed("Setting the remote event callback failed");
    return true;
}

/// In order, up to the first that fails.
bool QWRemoteControl::Private::_addElements(const QVariantList &elements)
{
    return std::all_of(elements.begin(), elements.end(), [this](const QVariant &element) {
        bool isNumber = false;
        const qlonglong cookie = element.toMap().value("ElementCookie").toLongLong(&isNumber);
        return isNumber && m_queue->addElement(quint32(cookie));
    });
}

void QWRemoteControl::Private::_destroyQueue()
{
    if (m_queue) {
        m_queue->stop();
        m_queue.reset();
    }
    if (m_interface) {
        m_interface->close();
        m_interface.reset();
    }
}

/// Always false, so that a step can return it.
bool QWRemoteControl::Private::_failed(const char *message, int line) const
{
    QWApplicationLog::sharedLog().warningMessage(
        {"QWRemoteControl", "QWCore/QWUtilities/QWRemoteControl", line, "-[QWRemoteControl _initQueue]", &m_owner},
        message);
    return false;
}

/// Takes out all that has come, unless a listener gives the receiver back meanwhile.
void QWRemoteControl::Private::remoteControlEvent(qint32 result)
{
    if (result != 0)
        return;
    while (m_queue) {
        const auto event = m_queue->nextEvent();
        if (!event)
            return;
        if (event->longValueSize == 0 || !event->longValue) // no button has one; it is freed with the event
            _handleEvent(*event);
    }
}

void QWRemoteControl::Private::_handleEvent(const platform::HidEvent &event)
{
    const auto calls = qw::remoteButtonCalls(event.elementCookie, event.value);
    if (calls && calls->down)
        _buttonDown(calls->button);
    if (calls && calls->up)
        _buttonUp(calls->button);
}

void QWRemoteControl::Private::_buttonDown(unsigned button)
{
    _forEachListener([&](QWRemoteControlListener &listener) { listener.remoteControlButtonDown(m_owner, button); });
}

void QWRemoteControl::Private::_buttonUp(unsigned button)
{
    _forEachListener([&](QWRemoteControlListener &listener) { listener.remoteControlButtonUp(m_owner, button); });
}

/// A call may add and remove listeners: one that was removed is not called any more, one that was added is not yet.
template <class Call>
void QWRemoteControl::Private::_forEachListener(Call call)
{
    const auto listeners = m_listeners;
    for (QWRemoteControlListener *const listener : listeners)
        if (m_listeners.contains(listener))
            call(*listener);
}

/// The listeners stay, so that they hear the receiver again as soon as a new listener finds it back.
void QWRemoteControl::Private::_receiverRemoved()
{
    QWApplicationLog::sharedLog().warningMessage({"QWRemoteControl", __FILE__, __LINE__, __func__, &m_owner},
                                                 "The remote was disconnected");
    _destroyQueue();
}

void QWRemoteControl::Private::_queueCallback(void *, qint32 result, void *refcon, void *)
{
    static_cast<Private *>(refcon)->remoteControlEvent(result);
}

void QWRemoteControl::Private::_removalCallback(void *, qint32, void *refcon, void *)
{
    static_cast<Private *>(refcon)->_receiverRemoved();
}
