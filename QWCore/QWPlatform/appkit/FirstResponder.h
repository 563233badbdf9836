#pragma once

#include <QWPlatform/qwplatform_export.h>

namespace platform
{

/// What has the keyboard focus, as far as it matters for keys.
enum class FirstResponder
{
    Other,
    Text,    ///< Something that is typed into, or text that can be selected; a web view too.
    Outline, ///< A list that opens and closes rows: all four arrows are its own.
    Table    ///< Any other list: up and down are its own.
};

/// Main thread; takes nanoseconds while the focus stays.
QWPLATFORM_EXPORT FirstResponder firstResponder();

/// True while keys go into a text.
QWPLATFORM_EXPORT bool isTypingText();

} // namespace platform
