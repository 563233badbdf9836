#pragma once

#include <QtGlobal>

namespace qw
{

/// Whether the desktop keeps the combination for itself; @p modifiers holds no bits but Shift, Control, Option and
/// Command.
bool isReservedKey(char16_t character, quint32 modifiers);

} // namespace qw
