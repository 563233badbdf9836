#pragma once

class QEvent;
class QObject;
class QWApplication;

namespace qw
{

/// Offers every key event to the keyboard shortcuts ahead of the windows and of Qt's own shortcuts, and has them told
/// of menu bars that are about to show.
class KeyboardShortcutsExtensions
{
public:
    KeyboardShortcutsExtensions() = delete;

    /// True for an event that a shortcut took; it reaches nothing else.
    static bool sendEvent(QWApplication &application, QObject *receiver, QEvent *event);
};

} // namespace qw
