#pragma once

class QEvent;
class QWidget;

namespace qw
{

/// Whether a key event is meant for text, a standard panel, a list or a pop-up, and so is no shortcut.
/// @p setShortcutPanel is the sheet that captures keys, or null; it takes shortcuts though it is a panel.
bool takesItsOrdinaryWay(const QEvent &event, const QWidget *setShortcutPanel);

} // namespace qw
