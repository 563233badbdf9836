#include "GroupSearch.h"

#include "QWUtilities/shortcuts/QWShortcutGroup.h"
#include "TextSearch.h"

#include <algorithm>
#include <iterator>

namespace qw
{

std::shared_ptr<QWShortcutGroup> matchingPart(const QWShortcutGroup &group, const QString &search)
{
    QWShortcutGroup::Shortcuts matching;
    std::copy_if(group.shortcuts().begin(), group.shortcuts().end(), std::back_inserter(matching),
                 [&](const auto &shortcut) { return containsIgnoringCaseAndAccents(shortcut->name(), search); });
    if (matching.empty())
        return nullptr;
    auto part = std::make_shared<QWShortcutGroup>();
    part->setName(group.name());
    part->setIsMenu(group.isMenu());
    part->setShortcuts(std::move(matching));
    return part;
}

} // namespace qw
