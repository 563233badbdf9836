#include "QWShortcutGroup.h"

#include "QWUtilities/shortcuts/model/ShortcutIndex.h"

#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <algorithm>

namespace
{
template <class Matches>
std::shared_ptr<QWShortcut> firstWhere(const QWShortcutGroup::Shortcuts &shortcuts, Matches matches)
{
    const auto found = std::find_if(shortcuts.begin(), shortcuts.end(), [&](const auto &s) { return matches(*s); });
    return found == shortcuts.end() ? nullptr : *found;
}
} // namespace

QWShortcutGroup::QWShortcutGroup() = default;

QWShortcutGroup::~QWShortcutGroup()
{
    _releaseShortcuts();
}

std::shared_ptr<QWShortcutGroup> QWShortcutGroup::shortcutGroupWithState(const QVariantMap &state)
{
    auto group = std::make_shared<QWShortcutGroup>();
    group->setState(state);
    return group;
}

QVariantMap QWShortcutGroup::state() const
{
    QVariantList members;
    for (const auto &shortcut : m_shortcuts)
        members.append(shortcut->state());
    return {{"name", m_name}, {"isMenu", m_isMenu}, {"shortcuts", members}};
}

void QWShortcutGroup::setState(const QVariantMap &state)
{
    if (state.contains("name"))
        m_name = state.value("name").toString();
    if (state.contains("isMenu"))
        m_isMenu = platform::truthOf(state.value("isMenu"));
    if (!state.contains("shortcuts"))
        return;
    Shortcuts members;
    const QVariantList states = state.value("shortcuts").toList();
    for (const QVariant &member : states) {
        if (member.typeId() != QMetaType::QVariantMap)
            continue;
        members.push_back(QWShortcut::shortcutWithState(member.toMap()));
        members.back()->setGroup(this);
    }
    setShortcuts(std::move(members));
}

std::shared_ptr<QWShortcutGroup> QWShortcutGroup::copy() const
{
    return shortcutGroupWithState(state());
}

void QWShortcutGroup::setShortcuts(Shortcuts shortcuts)
{
    std::vector<QWShortcutGroup *> owners;
    for (const auto &shortcut : shortcuts)
        owners.push_back(shortcut->group());
    _releaseShortcuts();
    for (std::size_t i = 0; i < shortcuts.size(); ++i) // those that stay were released with the others
        shortcuts[i]->setGroup(owners[i]);
    m_shortcuts = std::move(shortcuts);
}

int QWShortcutGroup::enabled() const
{
    const auto isEnabled = [](const auto &shortcut) { return shortcut->enabled(); };
    const bool any = std::any_of(m_shortcuts.begin(), m_shortcuts.end(), isEnabled);
    const bool all = std::all_of(m_shortcuts.begin(), m_shortcuts.end(), isEnabled);
    return m_shortcuts.empty() || any != all ? -1 : any;
}

void QWShortcutGroup::setEnabled(bool enabled)
{
    for (const auto &shortcut : m_shortcuts)
        shortcut->setEnabled(enabled);
}

std::shared_ptr<QWShortcut> QWShortcutGroup::shortcutWithKey(const QWShortcutKey &key) const
{
    return firstWhere(m_shortcuts, [&](const QWShortcut &shortcut) { return shortcut.key() == key; });
}

std::shared_ptr<QWShortcut> QWShortcutGroup::shortcutWithActionTag(const platform::Selector &action, qint32 tag) const
{
    return firstWhere(m_shortcuts,
                      [&](const QWShortcut &shortcut) { return shortcut.action() == action && shortcut.tag() == tag; });
}

void QWShortcutGroup::refreshMenu()
{
    if (!m_isMenu)
        return;
    for (const auto &shortcut : m_shortcuts)
        shortcut->refreshMenuItem();
}

/// Members may outlive the group, in a list of search results or while they send their action.
void QWShortcutGroup::_releaseShortcuts()
{
    if (m_index)
        m_index->invalidate();
    for (const auto &shortcut : m_shortcuts) {
        if (shortcut->group() == this)
            shortcut->setGroup(nullptr);
    }
}
