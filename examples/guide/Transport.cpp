#include "Transport.h"

#include <QWPlatform/appkit/ResponderChain.h>
#include <QWUtilities/controllers/QWRemoteControl.h>

Transport::Transport()
{
    QWRemoteControl::remoteControl().addListener(this);
}

Transport::~Transport()
{
    QWRemoteControl::remoteControl().removeListener(this);
}

void Transport::remoteControlButtonDown(QWRemoteControl &, unsigned button)
{
    if (button == 1)
        platform::sendAction("togglePlayback:", nullptr, nullptr);
}
