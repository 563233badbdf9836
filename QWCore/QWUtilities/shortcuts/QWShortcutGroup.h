#pragma once

#include "QWShortcut.h"

#include <vector>

/// A named list of shortcuts, in order; a menu group mirrors a menu of the host's main menu. Main thread.
class QWUTILITIES_EXPORT QWShortcutGroup
{
public:
    using Shortcuts = std::vector<std::shared_ptr<QWShortcut>>;

    QWShortcutGroup();
    ~QWShortcutGroup();
    QWShortcutGroup(const QWShortcutGroup &) = delete;
    QWShortcutGroup &operator=(const QWShortcutGroup &) = delete;

    static std::shared_ptr<QWShortcutGroup> shortcutGroupWithState(const QVariantMap &state);

    /// Setting takes the entries present; "shortcuts" replaces all members by new ones, which belong to this group.
    QVariantMap state() const;
    void setState(const QVariantMap &state);

    /// A group with shortcuts of its own.
    std::shared_ptr<QWShortcutGroup> copy() const;

    const QString &name() const { return m_name; } ///< Of a menu group: the title of its menu.
    void setName(const QString &name) { m_name = name; }
    bool isMenu() const { return m_isMenu; }
    void setIsMenu(bool isMenu) { m_isMenu = isMenu; }

    /// Setting shares the shortcuts; they stay with the group they belong to.
    const Shortcuts &shortcuts() const { return m_shortcuts; }
    void setShortcuts(Shortcuts shortcuts);

    /// 1: all are, 0: none is, -1: some are, or there are none at all.
    int enabled() const;
    void setEnabled(bool enabled);

    /// The first that has it, or null.
    std::shared_ptr<QWShortcut> shortcutWithKey(const QWShortcutKey &key) const;
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
