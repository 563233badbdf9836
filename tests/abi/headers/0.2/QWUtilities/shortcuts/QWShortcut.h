#pragma once

#include "QWShortcutKey.h"

#include <QWPlatform/appkit/Selector.h>
#include <QWUtilities/qwutilities_export.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

class QWShortcutGroup;

namespace platform
{
class MenuItem;
}

namespace qw
{
class ShortcutIndex;
}

/// Binds a key to an action of the host. It is the sender of its action, so the receiver reads tag and represented
/// object from it (as properties too, like those of a menu item). Main thread.
///
/// Its fields lie open: one key press looks at several, and a hidden inside would cost each of thousands of shortcuts
/// an allocation at every reload. Its state dictionary:
///
///     name, action           string   "Save As", "saveAs:"
///     tag                    integer  32 bits, signed
///     prohibitRepeats        boolean
///     enabled                boolean
///     character, modifiers   integer  see QWShortcutKey
///     representedObject      any      when there is one
class QWUTILITIES_EXPORT QWShortcut : public QObject
{
    Q_OBJECT
    /// tag()
    Q_PROPERTY(qlonglong tag READ tag)
    /// representedObject()
    Q_PROPERTY(QVariant representedObject READ representedObject)

public:
    /// Without key and action, disabled, in no group.
    QWShortcut();
    ~QWShortcut() override; ///< Leaves its menu item as it is.

    /// A new one with the entries of @p state that are there.
    static std::shared_ptr<QWShortcut> shortcutWithState(const QVariantMap &state);

    /// The property-list dictionary described above.
    QVariantMap state() const;

    /// Takes the entries present and changes no menu. A value that cannot be converted counts as "", 0 or
    /// false.
    void setState(const QVariantMap &state);

    /// The group it belongs to, which is not owned; null once that is gone.
    QWShortcutGroup *group() const { return m_group; }
    void setGroup(QWShortcutGroup *group) { m_group = group; } ///< Adds it to no group's list.

    /// For a shortcut of a menu: the titles on the way down to its item, separated by ">".
    const QString &name() const { return m_name; }
    void setName(const QString &name) { m_name = name; } ///< Changes no menu.

    /// What is sent along the responder chain.
    const platform::Selector &action() const { return m_action; }
    void setAction(const platform::Selector &action); ///< Changes no menu.

    /// Tells several shortcuts of one action apart.
    qint32 tag() const { return m_tag; }
    void setTag(qint32 tag); ///< Changes no menu.

    /// Whatever the host wants to find at the sender; invalid: none.
    const QVariant &representedObject() const { return m_representedObject; }
    void setRepresentedObject(const QVariant &object) { m_representedObject = object; } ///< Changes no menu.

    /// A key that is held sends the action once only.
    bool prohibitRepeats() const { return m_prohibitRepeats; }
    void setProhibitRepeats(bool prohibit) { m_prohibitRepeats = prohibit; } ///< From the next press on.

    /// Changes made to the key itself count at once, but leave the menu item as it is until its next refresh.
    QWShortcutKey &key() { return m_key; }
    const QWShortcutKey &key() const { return m_key; } ///< Clear for a shortcut without a key.
    void setKey(const QWShortcutKey &key);             ///< Refreshes the menu item.
    void clearKey();                                   ///< Refreshes the menu item.

    /// Only then it is performed, and its menu item shows its key.
    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled); ///< Refreshes the menu item.

    /// Of a shortcut in a menu group: puts key, action, tag and represented object onto its item in the menu bar of
    /// each window that has one; a key only while it is enabled.
    void refreshMenuItem();

    /// Sends the action; false when it is not to be sent now, so that the event takes its ordinary way. True does not
    /// say that anybody took it. The action may do anything; callers keep the shortcut alive meanwhile.
    bool perform(const platform::KeyEvent &event);

    /// Does nothing; what the temporary item sends that makes the menu's title light up.
    Q_INVOKABLE void fakeAction(QObject *sender);

private:
    friend class QWShortcutKey;
    friend class qw::ShortcutIndex;

    void _keyDidChange(const QWShortcutKey &before);
    void _identityDidChange();
    void _setValueForKey(const QString &key, const QVariant &value);
    void _refresh(platform::MenuItem &item) const;
    bool _isInMenuGroup() const;
    bool _isValid();
    void _blinkMenu();

    // What a press needs comes first, so that it lies in one line of the processor's cache.
    QWShortcutGroup *m_group = nullptr;
    platform::Selector m_action;
    qint32 m_tag = 0;
    bool m_enabled = false;
    bool m_prohibitRepeats = false;
    QString m_name;
    QVariant m_representedObject;
    QWShortcutKey m_key;

    qw::ShortcutIndex *m_index = nullptr; ///< Where it stands, or null.
    int m_position = 0;                   ///< In the index.
};
