#include "ShortcutIndex.h"

#include <algorithm>
#include <utility>

namespace qw
{

namespace
{
quint64 numberOf(const QWShortcutKey &key)
{
    return quint64(key.modifiers()) << 16 | key.character();
}
} // namespace

ShortcutIndex::ShortcutIndex(const Groups &groups)
    : m_groups(groups)
{
}

ShortcutIndex::~ShortcutIndex()
{
    invalidate();
}

std::shared_ptr<QWShortcut> ShortcutIndex::shortcutWithKey(const QWShortcutKey &key)
{
    if (!m_isValid)
        _build();
    const auto found = m_byKey.constFind(numberOf(key));
    return found == m_byKey.cend() ? nullptr : m_shortcuts[std::size_t(found->front())];
}

std::shared_ptr<QWShortcut> ShortcutIndex::shortcutWithActionTag(const platform::Selector &action, qint32 tag)
{
    if (!m_isValid)
        _build();
    const auto found = m_byIdentity.constFind({action, tag});
    return found == m_byIdentity.cend() ? nullptr : m_shortcuts[std::size_t(*found)];
}

void ShortcutIndex::invalidate()
{
    for (const auto &shortcut : m_shortcuts)
        shortcut->m_index = nullptr;
    for (const auto &group : m_indexedGroups)
        group->m_index = nullptr;
    m_isValid = false;
    m_byKey.clear();
    m_byIdentity.clear();
    // Out of the members first: what goes with them may ask.
    const auto shortcuts = std::exchange(m_shortcuts, {});
    const auto groups = std::exchange(m_indexedGroups, {});
}

void ShortcutIndex::keyDidChange(const QWShortcut &shortcut, const QWShortcutKey &before)
{
    const auto old = m_byKey.find(numberOf(before));
    old->erase(std::lower_bound(old->begin(), old->end(), shortcut.m_position));
    if (old->isEmpty())
        m_byKey.erase(old);
    Positions &positions = m_byKey[numberOf(shortcut.key())];
    positions.insert(std::lower_bound(positions.begin(), positions.end(), shortcut.m_position), shortcut.m_position);
}

void ShortcutIndex::_build()
{
    invalidate();
    m_indexedGroups = m_groups;
    for (const auto &group : m_indexedGroups) {
        group->m_index = this;
        for (const auto &shortcut : group->shortcuts())
            _add(shortcut);
    }
    m_isValid = true;
}

void ShortcutIndex::_add(const std::shared_ptr<QWShortcut> &shortcut)
{
    if (shortcut->m_index == this)
        return; // stands in several groups; its first place counts
    const int position = static_cast<int>(m_shortcuts.size());
    shortcut->m_index = this;
    shortcut->m_position = position;
    m_shortcuts.push_back(shortcut);
    m_byKey[numberOf(shortcut->key())].append(position);
    const Identity identity{shortcut->action(), shortcut->tag()};
    if (!m_byIdentity.contains(identity))
        m_byIdentity.insert(identity, position);
}

} // namespace qw
