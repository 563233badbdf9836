#pragma once

#include "QWShortcut.h"

#include <vector>

/// A named list of shortcuts, in order; a menu group mirrors a menu of the host's main menu. Main thread.
///
/// Its fields lie open, as those of its shortcuts do: key presses look into it. Its state dictionary:
///
///     name        string
///     isMenu      boolean
///     shortcuts   array    of what QWShortcut::state() gives
class QWUTILITIES_EXPORT QWShortcutGroup
{
public:
    /// Shortcuts in order; shared with whoever keeps one.
    using Shortcuts = std::vector<std::shared_ptr<QWShortcut>>;

    QWShortcutGroup();  ///< Without name and shortcuts, of no menu.
    ~QWShortcutGroup(); ///< Shortcuts that somebody keeps belong to no group then.

    QWShortcutGroup(const QWShortcutGroup &) = delete;            ///< copy() makes another.
    QWShortcutGroup &operator=(const QWShortcutGroup &) = delete; ///< copy() makes another.

    /// A new one with the entries of @p state that are there.
    static std::shared_ptr<QWShortcutGroup> shortcutGroupWithState(const QVariantMap &state);

    /// The property-list dictionary described above.
    QVariantMap state() const;

    /// Takes the entries present; "shortcuts" replaces all members by new ones, which belong to this group.
    void setState(const QVariantMap &state);

    /// A group with shortcuts of its own.
    std::shared_ptr<QWShortcutGroup> copy() const;

    const QString &name() const { return m_name; }       ///< Of a menu group: the title of its menu.
    void setName(const QString &name) { m_name = name; } ///< Changes no menu.

    /// Its shortcuts have items in the main menu, which show their keys; whoever would take an action is asked first,
    /// as for an item.
    bool isMenu() const { return m_isMenu; }
    void setIsMenu(bool isMenu) { m_isMenu = isMenu; } ///< Changes no menu.

    /// The members, in order.
    const Shortcuts &shortcuts() const { return m_shortcuts; }
    void setShortcuts(Shortcuts shortcuts); ///< Shares them; they stay with the group they belong to.

    /// 1: all are, 0: none is, -1: some are, or there are none at all.
    int enabled() const;
    void setEnabled(bool enabled); ///< All of them, with their menu items.

    /// The first that has it, or null.
    std::shared_ptr<QWShortcut> shortcutWithKey(const QWShortcutKey &key) const;

    /// The first that has both, or null.
    std::shared_ptr<QWShortcut> shortcutWithActionTag(const platform::Selector &action, qint32 tag) const;

    /// Of a menu group: refreshes the menu items of all members.
    void refreshMenu();

private:
    friend class qw::ShortcutIndex;

    void _releaseShortcuts();

    Shortcuts m_shortcuts;
    QString m_name;
    bool m_isMenu = false;
    qw::ShortcutIndex *m_index = nullptr; ///< The one to be told that the members changed, or null.
};
