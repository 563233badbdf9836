#pragma once

#include <QWPlatform/qwplatform_private.h>

class QKeyEvent;

namespace platform
{

/// What has the keyboard focus, as far as it matters for keys.
enum class FirstResponder
{
    Other,
    Text,    ///< Something that is typed into, or text that can be selected; a web page while a field in it is edited.
    Outline, ///< A list that opens and closes rows: all four arrows are its own.
    Table    ///< Any other list: up and down are its own.
};

/// Main thread; takes nanoseconds while the focus stays.
QWPLATFORM_SHARED_EXPORT FirstResponder firstResponder();

/// True while keys go into a text.
QWPLATFORM_SHARED_EXPORT bool isTypingText();

/// Whether @p press is the text's that has the focus: it types there or moves in it. What comes with Ctrl, Alt or Meta
/// is not, unless the text takes it itself, nor is a function key; AltGr, which comes as Ctrl and Alt with a text,
/// types.
QWPLATFORM_SHARED_EXPORT bool belongsToText(const QKeyEvent &press);

/// Whether the text that has the focus would take @p press without good reason: fields type what comes with Alt or
/// Meta, and one that cannot be changed takes the keys of Undo, Redo, Cut and Paste.
QWPLATFORM_SHARED_EXPORT bool isTakenByMistake(const QKeyEvent &press);

} // namespace platform
