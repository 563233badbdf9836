#pragma once

#include <QWBase/qwbase_export.h>

class QEvent;

/// Queries of events. A key goes down as a key press, or ahead of it as the question whether it is a shortcut
/// (QEvent::ShortcutOverride); both count.
namespace QWEvents
{

/// True for one of the four arrow keys going down, whatever the modifiers.
QWBASE_EXPORT bool isArrowKeyDownEvent(const QEvent &event);

/// True for the up or down arrow going down.
QWBASE_EXPORT bool isVerticalArrowKeyDownEvent(const QEvent &event);

/// True when the Option (Alt) modifier is held in a key, mouse or wheel event; false for any other event.
QWBASE_EXPORT bool optionKeyDown(const QEvent &event);

} // namespace QWEvents
