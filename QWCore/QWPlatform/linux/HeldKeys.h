#pragma once

#include "../devices/KeyboardState.h"

#include <QObject>

class QKeyEvent;

namespace platform
{

/// What is held, from the key events that the application gets. Its costs are one comparison an event.
class HeldKeys : public QObject
{
public:
    /// Watches the application object from now on, when there is one.
    HeldKeys();

    const KeyMap &map() const { return m_map; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _note(const QKeyEvent &key);

    KeyMap m_map{};
};

} // namespace platform
