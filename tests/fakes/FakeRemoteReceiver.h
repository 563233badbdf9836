#pragma once

#include <QWPlatform/devices/input/RemoteReceiver.h>

#include <QSet>
#include <QStringList>

#include <deque>

/// A receiver whose every step the test can have fail, by the name under which calls lists it (without the argument).
/// The test presses by sending events.
class FakeRemoteReceiver : public platform::RemoteReceiver
{
public:
    std::optional<QString> firstServiceMatching(const QString &className) override;
    std::unique_ptr<platform::HidPlugin> createPlugin(const QString &service) override;

    /// Puts an event into the queue and calls out, as the platform does. Nothing without a started queue.
    void send(quint32 cookie, qint32 value) { send({.elementCookie = cookie, .value = value}); }
    void send(platform::HidEvent event) { send(std::deque{std::move(event)}); }
    void send(std::deque<platform::HidEvent> events);

    /// Calls out with @p result; events in the queue stay unless somebody takes them.
    void callOut(qint32 result) const;

    /// The receiver goes, as when it is unplugged.
    void remove() const;

    bool isHeld() const { return m_interface; }
    bool hasQueue() const { return m_queue; }

    QVariantList elements = elementsWithCookies({20, 18});
    static QVariantList elementsWithCookies(const QVariantList &cookies);

    std::unique_ptr<platform::RemoteReceiver> real; ///< Takes the place of all this when the test sets it.

    QStringList calls;       ///< Every step with its argument, in order.
    QSet<QString> broken;    ///< Steps that fail.
    int failingElement = -1; ///< Index of the element that cannot be added to the queue.
    std::deque<platform::HidEvent> events;

private:
    class Plugin;
    class Interface;
    class Queue;

    /// Notes the step; false when it is to fail.
    bool _step(const QString &name, const QString &argument = {});

    Interface *m_interface = nullptr; ///< The one that is open.
    Queue *m_queue = nullptr;         ///< The one allocated last, while it lives.
};
