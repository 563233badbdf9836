#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>
#include <QVariantList>

#include <memory>
#include <set>
#include <source_location>

class QWRemoteControlListener;

namespace platform
{
struct HidEvent;
class HidInterface;
class HidQueue;
} // namespace platform

/// The buttons of the computer's infrared receiver. While anyone listens the receiver is held exclusively, so the
/// desktop does not act on the remote; it is given back when the last listener leaves or the application quits.
/// Failures are warnings in the log, never shown or returned. All on the thread that adds the first listener, normally
/// the main thread.
class QWUTILITIES_EXPORT QWRemoteControl : public QObject
{
public:
    /// Made on first use; the receiver is not touched before the first listener comes.
    static QWRemoteControl &remoteControl();

    ~QWRemoteControl() override;

    /// @p listener is not null, not owned and must be removed before it goes. One that is there already is not added
    /// again. True, also when the receiver cannot be had; the next new listener tries again if it could not be found,
    /// opened or asked for its elements, or was unplugged since.
    bool addListener(QWRemoteControlListener *listener);

    /// Always true; one that was never added is no mistake.
    bool removeListener(QWRemoteControlListener *listener);

    bool hasListener(QWRemoteControlListener *listener) const;

    /// The receiver is held and its buttons arrive. False without listeners, without a receiver and once it has gone.
    bool isActive() const;

    /// Forgets the listeners and gives the receiver back. The application object calls it when it quits.
    void applicationWillTerminate();

protected:
    QWRemoteControl();

private:
    void _initQueue();
    bool _openInterface();
    bool _setUpQueue();
    bool _addElements(const QVariantList &elements);
    void _destroyQueue();
    bool _failed(const char *message, std::source_location where = std::source_location::current()) const;

    void remoteControlEvent(qint32 result);
    void _handleEvent(const platform::HidEvent &event);
    void _buttonDown(unsigned button);
    void _buttonUp(unsigned button);
    template <class Call>
    void _forEachListener(Call call);
    void _receiverRemoved();

    static void _queueCallback(void *target, qint32 result, void *refcon, void *sender);
    static void _removalCallback(void *target, qint32 result, void *refcon, void *sender);

    std::set<QWRemoteControlListener *> m_listeners;
    std::unique_ptr<platform::HidInterface> m_interface; ///< Null when released.
    std::unique_ptr<platform::HidQueue> m_queue;         ///< Null when not set up; set though a later step failed.
};
