#pragma once

#include <QString>

namespace qw
{

/// "⌃⌥⇧⌘", those of @p modifiers in this order.
QString modifierGlyphs(quint32 modifiers);

/// The key's own text: a glyph, "F5", the localized "[space]", or the character in capitals, bracketed when it is of
/// the numeric keypad.
QString keyText(char16_t character, quint32 modifiers);

} // namespace qw
