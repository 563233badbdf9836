#pragma once

#include "QWUtilities/shortcuts/QWShortcutGroup.h"

#include <QHash>
#include <QVarLengthArray>

namespace qw
{

/// Answers look-ups in a list of groups as a walk through it would at that moment, without the walk. Shortcuts and
/// groups in it tell it of their changes: a changed key moves, any other change makes it start anew at the next
/// question. Whoever changes the list of groups itself calls invalidate() before.
class ShortcutIndex
{
public:
    using Groups = std::vector<std::shared_ptr<QWShortcutGroup>>;

    /// @p groups must outlive the index.
    explicit ShortcutIndex(const Groups &groups);
    ~ShortcutIndex();
    ShortcutIndex(const ShortcutIndex &) = delete;
    ShortcutIndex &operator=(const ShortcutIndex &) = delete;

    /// The first in group order, or null.
    std::shared_ptr<QWShortcut> shortcutWithKey(const QWShortcutKey &key);
    std::shared_ptr<QWShortcut> shortcutWithActionTag(const platform::Selector &action, qint32 tag);

    void invalidate();
    void keyDidChange(const QWShortcut &shortcut, const QWShortcutKey &before);

private:
    using Positions = QVarLengthArray<int, 3>; ///< Ascending; keys are seldom shared.
    using Identity = std::pair<platform::Selector, qint32>;

    void _build();
    void _add(const std::shared_ptr<QWShortcut> &shortcut);

    const Groups &m_groups;
    bool m_isValid = false;
    Groups m_indexedGroups;
    std::vector<std::shared_ptr<QWShortcut>> m_shortcuts; ///< Each once, in group order.
    QHash<quint64, Positions> m_byKey;
    QHash<Identity, int> m_byIdentity; ///< Position of the first.
};

} // namespace qw
