#pragma once

#include <QWUtilities/qwutilities_export.h>

class QWRemoteControl;

/// Hears the buttons of the infrared remote; overrides what it wants to hear. Called on the thread that added the first
/// listener. It may add and remove listeners, itself included, while it is called.
class QWUTILITIES_EXPORT QWRemoteControlListener
{
public:
    virtual ~QWRemoteControlListener();

    /// @p button is 0 to 5. Held menu and play buttons (0, 1) send a down that no up follows.
    virtual void remoteControlButtonDown(QWRemoteControl &remoteControl, unsigned button);
    virtual void remoteControlButtonUp(QWRemoteControl &remoteControl, unsigned button);
};
