#include "QWShortcutKeyMenuItem.h"

#include "QWUtilities/shortcuts/QWShortcutKey.h"

#include <QWPlatform/appkit/MenuItem.h>

namespace qw
{

namespace QWShortcutKeyMenuItem
{

void setShortcutKey(platform::MenuItem &item, const QWShortcutKey &key)
{
    item.setKeyEquivalent(key.isClear() ? QString() : QString(QChar(key.character())), key.modifiers());
}

void clearKeyEquivalent(platform::MenuItem &item)
{
    item.setKeyEquivalent({}, item.keyEquivalentModifierMask());
}

} // namespace QWShortcutKeyMenuItem

} // namespace qw
