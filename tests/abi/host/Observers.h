#pragma once

#include <QWUtilities/controllers/QWMonomeRemote.h>
#include <QWUtilities/controllers/QWMonomeRemoteObserver.h>
#include <QWUtilities/controllers/QWRemoteControlListener.h>

/// Implements one of the functions; the library calls the others, too.
struct GridWatcher : QWMonomeRemoteObserver
{
    void monomeRemoteConnected(QWMonomeRemote &) override { ++connected; }

    int connected = 0;
};

struct RemoteWatcher : QWRemoteControlListener
{
    void remoteControlButtonUp(QWRemoteControl &, unsigned) override { ++released; }

    int released = 0;
};
