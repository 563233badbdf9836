#pragma once

#include "GridListener.h"

#include <functional>

/// Does something in the middle of a call.
class GridMeddler : public GridListener
{
public:
    void monomeRemoteConnected(QWMonomeRemote &remote) override
    {
        GridListener::monomeRemoteConnected(remote);
        if (onConnected)
            onConnected(remote);
    }

    void monomeRemoteButtonDownAtPosition(QWMonomeRemote &remote, QWGridPosition position) override
    {
        GridListener::monomeRemoteButtonDownAtPosition(remote, position);
        if (onButton)
            onButton(remote);
    }

    std::function<void(QWMonomeRemote &)> onConnected;
    std::function<void(QWMonomeRemote &)> onButton;
};
