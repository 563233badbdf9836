#pragma once

#include <QWidget>

class KeyLabel;

/// How a key comes to the program.
enum class Route
{
    Window, ///< As from the window system, by way of the window object.
    Widget, ///< Straight to the focus widget, the question first.
    Sent,   ///< A key press that a program sends.
    X       ///< A real key of the X server.
};

bool onX();

/// Shows the window and makes it key; false when it does not become so.
bool activate(QWidget &window);

/// A key goes down and up.
void type(Route route, int key, Qt::KeyboardModifiers modifiers = {});

/// Keys of X arrive some time later; one more, which is no shortcut, tells that those before it have.
bool arrived(Route route, const KeyLabel &label);
