#pragma once

#include <QWUtilities/qwutilities_export.h>

class QWRemoteControl;

/// Hears the buttons of the infrared remote; overrides what it wants to hear. Called on the thread that added the first
/// listener. It may add and remove listeners, itself included, while it is called.
class QWUTILITIES_EXPORT QWRemoteControlListener
{
public:
    /// Removes itself from nothing: that is done before.
    virtual ~QWRemoteControlListener();

    /// @p button is 0 to 5. Held menu and play buttons (0, 1) send a down that no up follows.
    virtual void remoteControlButtonDown(QWRemoteControl &remoteControl, unsigned button);

    /// @p button is 0 to 5. A short press comes as a down and an up, one right after the other.
    virtual void remoteControlButtonUp(QWRemoteControl &remoteControl, unsigned button);
};
