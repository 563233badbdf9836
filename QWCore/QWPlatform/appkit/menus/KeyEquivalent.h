#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QKeySequence>
#include <QString>

class QKeyEvent;

namespace platform::KeyEquivalent
{

/// The desktop's key sequence for a key equivalent's character and event modifier bits; empty for none.
QKeySequence sequence(const QString &character, quint32 modifierMask);

/// The desktop's own wording ("Ctrl+S").
QWPLATFORM_SHARED_EXPORT QString text(const QString &character, quint32 modifierMask);

/// Whether @p event is that key, whichever way Shift was needed to type its character.
bool matches(const QString &character, quint32 modifierMask, const QKeyEvent &event);

} // namespace platform::KeyEquivalent
