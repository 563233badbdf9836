#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>

#include <memory>

class QWRemoteControlListener;

/// The buttons of the computer's infrared receiver. While anyone listens the receiver is held exclusively, so the
/// desktop does not act on the remote; it is given back when the last listener leaves or the application quits.
/// Failures are warnings in the log, never shown or returned. All on the thread that adds the first listener, normally
/// the main thread.
class QWUTILITIES_EXPORT QWRemoteControl : public QObject
{
public:
    /// The one object of the current System, made on first use; the receiver is not touched before the first listener
    /// comes.
    static QWRemoteControl &remoteControl();

    /// Gives the receiver back.
    ~QWRemoteControl() override;

    /// @p listener is not null, not owned and must be removed before it goes. One that is there already is not added
    /// again. True, also when the receiver cannot be had; the next new listener tries again if it could not be found,
    /// opened or asked for its elements, or was unplugged since.
    bool addListener(QWRemoteControlListener *listener);

    /// Always true; one that was never added is no mistake.
    bool removeListener(QWRemoteControlListener *listener);

    /// Was added, and not removed since.
    bool hasListener(QWRemoteControlListener *listener) const;

    /// The receiver is held and its buttons arrive. False without listeners, without a receiver and once it has gone.
    bool isActive() const;

    /// Forgets the listeners and gives the receiver back. The application object calls it when it quits.
    void applicationWillTerminate();

protected:
    /// For remoteControl(), which makes the one there is.
    QWRemoteControl();

private:
    class Private;
    std::unique_ptr<Private> d;
};
