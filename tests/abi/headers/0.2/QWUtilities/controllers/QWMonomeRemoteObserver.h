#pragma once

#include "QWGridPosition.h"

#include <QWUtilities/qwutilities_export.h>

class QWMonomeRemote;

/// Told what happens at the grid. Each call may be left alone; none may throw.
class QWUTILITIES_EXPORT QWMonomeRemoteObserver
{
public:
    /// Removes itself from nothing: that is done before.
    virtual ~QWMonomeRemoteObserver();

    /// A grid was opened; its buttons are read from now on. Main thread.
    virtual void monomeRemoteConnected(QWMonomeRemote &remote);

    /// The grid was unplugged and is closed. Main thread.
    virtual void monomeRemoteRemoved(QWMonomeRemote &remote);

    /// A button, at the application's position. Called on the grid's reader thread, a millisecond after the press at
    /// most: what touches windows has to be handed to the main thread.
    virtual void monomeRemoteButtonDownAtPosition(QWMonomeRemote &remote, QWGridPosition position);

    /// The same when it is let go.
    virtual void monomeRemoteButtonUpAtPosition(QWMonomeRemote &remote, QWGridPosition position);
};
