#pragma once

#include <QWPlatform/devices/KeyboardState.h>

/// The test holds keys by setting the map; counts how often it was asked.
class FakeKeyboardState : public platform::KeyboardState
{
public:
    void startWatching() override { isWatched = true; }

    platform::KeyMap keyMap() override
    {
        ++asked;
        return map;
    }

    platform::KeyMap map{};
    int asked = 0;
    bool isWatched = false;
};
