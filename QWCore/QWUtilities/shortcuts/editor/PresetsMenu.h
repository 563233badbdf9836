#pragma once

class QMenu;
class QObject;
class QWidget;
class QWKeyboardShortcuts;

namespace qw
{

/// New menu with the six commands that come before the presets; owned by @p window. @p editor takes "saveShortcuts:",
/// the registry the others; neither is owned. Whenever it opens, the presets that are in use get a check mark.
QMenu *makePresetsMenu(QWidget &window, QWKeyboardShortcuts &registry, QObject &editor);

} // namespace qw
