#pragma once

#include <QWPlatform/qwplatform_private.h>

class QKeyEvent;
class QMenu;

namespace platform
{

/// Performs the first enabled item of the main menu bar whose key equivalent @p event is; false when there is none, for
/// auto-repeats, for a press that belongs to the text with the focus, and while a modal panel or a sheet stands before
/// that window. The application calls it for a key press that no widget took.
QWPLATFORM_SHARED_EXPORT bool performKeyEquivalent(const QKeyEvent &event);

/// The same within @p menu and its submenus, without looking at the focus. The title of the main menu that holds the
/// item lights up for a moment.
QWPLATFORM_SHARED_EXPORT bool performKeyEquivalent(QMenu &menu, const QKeyEvent &event);

} // namespace platform
