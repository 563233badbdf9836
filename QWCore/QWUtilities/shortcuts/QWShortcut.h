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
class QWUTILITIES_EXPORT QWShortcut : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qlonglong tag READ tag)
    Q_PROPERTY(QVariant representedObject READ representedObject)

public:
    QWShortcut();
    ~QWShortcut() override;

    static std::shared_ptr<QWShortcut> shortcutWithState(const QVariantMap &state);

    /// A property-list dictionary; the key's entries stand among the others. Setting takes the entries present and
    /// changes no menu.
    QVariantMap state() const;
    void setState(const QVariantMap &state);

    /// The group it belongs to, which is not owned; null once that is gone.
    QWShortcutGroup *group() const { return m_group; }
    void setGroup(QWShortcutGroup *group) { m_group = group; }

    /// For a shortcut of a menu: the titles on the way down to its item, separated by ">".
    const QString &name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }

    const platform::Selector &action() const { return m_action; }
    void setAction(const platform::Selector &action);
    qint32 tag() const { return m_tag; }
    void setTag(qint32 tag);
    const QVariant &representedObject() const { return m_representedObject; }
    void setRepresentedObject(const QVariant &object) { m_representedObject = object; }

    bool prohibitRepeats() const { return m_prohibitRepeats; }
    void setProhibitRepeats(bool prohibit) { m_prohibitRepeats = prohibit; }

    /// Changes made to the key itself count at once, but leave the menu item as it is until its next refresh.
    QWShortcutKey &key() { return m_key; }
    const QWShortcutKey &key() const { return m_key; }
    void setKey(const QWShortcutKey &key);
    void clearKey();

    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled);

    /// Of a shortcut in a menu group: puts key, action, tag and represented object onto its item of the main menu.
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
