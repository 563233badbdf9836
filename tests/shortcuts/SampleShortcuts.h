#pragma once

#include "ShortcutHost.h"

/// A small factory definition, and what tests ask of it.
namespace sample
{

inline constexpr quint32 command = 0x100000;
inline constexpr quint32 shift = 0x20000;

/// Play 1, Play 2, Stop in Transport; Save in the menu File.
inline const QVariantList factory{
    groupState("Transport", {shortcutState("Play", "play:", 'p', 0, 1),
                             shortcutState("Play slow", "play:", 'p', shift, 2), shortcutState("Stöp", "stop:", 's')}),
    groupState("File", {shortcutState("Save", "save:", 's', command)}, true),
};

/// The registry of the current System, read anew.
inline QWKeyboardShortcuts &loaded()
{
    QWKeyboardShortcuts::loadShortcuts();
    return QWKeyboardShortcuts::sharedInstance();
}

/// A key that nobody has when there is no such shortcut.
inline QWShortcutKey keyOf(const QWKeyboardShortcuts &registry, const char *action, int tag = 0)
{
    const auto shortcut = registry.shortcutWithActionTag(action, tag);
    return shortcut ? shortcut->key() : QWShortcutKey(0xffff, 0);
}

} // namespace sample
