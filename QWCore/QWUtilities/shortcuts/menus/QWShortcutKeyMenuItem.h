#pragma once

#include <QWUtilities/qwutilities_private.h>

class QWShortcutKey;

namespace platform
{
class MenuItem;
}

namespace qw
{

/// Shortcut keys as key equivalents of menu items.
namespace QWShortcutKeyMenuItem
{

/// The menu shows the key without an implied Shift; a clear key shows nothing.
QWUTILITIES_TEST_EXPORT void setShortcutKey(platform::MenuItem &item, const QWShortcutKey &key);

/// The modifier mask stays.
QWUTILITIES_TEST_EXPORT void clearKeyEquivalent(platform::MenuItem &item);

} // namespace QWShortcutKeyMenuItem

} // namespace qw
