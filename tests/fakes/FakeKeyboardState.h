#pragma once

#include <QWPlatform/devices/input/KeyboardState.h>

#include <QKeyEvent>
#include <QList>

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

    void noteKeyEvent(const QKeyEvent &event) override { noted.append({event.type(), event.key()}); }

    bool isCapsLockOn() override { return capsLock; }

    platform::KeyMap map{};
    bool capsLock = false;
    int asked = 0;
    bool isWatched = false;
    QList<std::pair<QEvent::Type, int>> noted; ///< Key events that came by, and their keys.
};
