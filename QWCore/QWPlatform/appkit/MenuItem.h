#pragma once

#include "Selector.h"

#include <QWPlatform/qwplatform_export.h>

#include <QAction>
#include <QPointer>
#include <QVariant>

class QKeyEvent;
class QMenu;

namespace platform
{

/// An item of a menu. The title is kept as given, apart from the text shown; choosing the item sends its action with
/// the item as sender, to the receiver found at that moment.
class QWPLATFORM_EXPORT MenuItem : public QAction
{
    Q_OBJECT
    Q_PROPERTY(qlonglong tag READ tag)
    Q_PROPERTY(QVariant representedObject READ representedObject)

public:
    /// Event modifier bits that a key equivalent may have.
    enum Modifier : quint32
    {
        Shift = 0x20000,
        Control = 0x40000,
        Option = 0x80000,
        Command = 0x100000
    };

    explicit MenuItem(const QString &title = {}, QObject *parent = nullptr);
    ~MenuItem() override;

    /// As given: "&" is a character like any other.
    const QString &title() const { return m_title; }
    void setTitle(const QString &title);

    qlonglong tag() const { return m_tag; }
    void setTag(qlonglong tag) { m_tag = tag; }

    const QVariant &representedObject() const { return m_representedObject; }
    void setRepresentedObject(const QVariant &object) { m_representedObject = object; }

    const Selector &action() const { return m_action; }
    void setAction(const Selector &action);

    /// Null: the responder chain finds the receiver. Not owned; one that has gone receives nothing, and neither does
    /// the chain in its place.
    QObject *target() const { return m_target; }
    void setTarget(QObject *target);

    /// One character, lower case for letters, or a platform function key (U+F700 to U+F747); "" for none. Shown beside
    /// the title in the desktop's own wording, but not registered as the QAction's shortcut, see
    /// performKeyEquivalent().
    const QString &keyEquivalent() const { return m_keyEquivalent; }
    quint32 keyEquivalentModifierMask() const { return m_keyEquivalentModifiers; }
    void setKeyEquivalent(const QString &character, quint32 modifierMask = Command);

    /// Whether the key press is this item's key equivalent.
    bool matches(const QKeyEvent &event) const;

    /// Finds the receiver and asks it; true for an item without an action when it is enabled.
    bool validate();

private:
    void _showText();
    Q_INVOKABLE void _send(bool checked);

    QString m_title;
    QString m_keyEquivalent;
    QVariant m_representedObject; ///< Apart from QAction::data(), whose every change is told to the menu.
    Selector m_action;
    QPointer<QObject> m_target;
    qlonglong m_tag = 0;
    quint32 m_keyEquivalentModifiers = 0;
    bool m_hasTarget = false; ///< Set with a target, which may be gone.
};

/// The title of any item: as given for a MenuItem, else the QAction's text without mnemonics and shortcut.
QWPLATFORM_EXPORT QString titleOf(const QAction &item);

/// New item at the end of @p menu, or before @p before; owned by the menu.
QWPLATFORM_EXPORT MenuItem *addMenuItem(QMenu &menu, const QString &title, const Selector &action = {},
                                        const QString &keyEquivalent = {}, quint32 modifierMask = MenuItem::Command);
QWPLATFORM_EXPORT MenuItem *insertMenuItem(QMenu &menu, QAction *before, const QString &title,
                                           const Selector &action = {});

/// A submenu titled @p title as given; owned by @p menu.
QWPLATFORM_EXPORT QMenu *addSubmenu(QMenu &menu, const QString &title);

/// Enables and disables the items of @p menu that have an action, as their receivers say.
QWPLATFORM_EXPORT void validateMenu(QMenu &menu);

/// From now on validateMenu() runs whenever @p menu opens. The functions above see to it; callers that add their own
/// MenuItems by other means call it once for the menu.
QWPLATFORM_EXPORT void setAutoenablesItems(QMenu &menu);

/// The text that a menu shows for @p title: "&" doubled, no line breaks, shortened in the middle above 120 characters.
QWPLATFORM_EXPORT QString shownTitle(const QString &title);

/// Performs the first enabled item of the main menu bar whose key equivalent @p event is; false when there is none, for
/// auto-repeats, for a press that belongs to the text with the focus, and while a modal panel or a sheet stands before
/// that window. The application calls it for a key press that no widget took.
QWPLATFORM_EXPORT bool performKeyEquivalent(const QKeyEvent &event);

/// The same within @p menu and its submenus, without looking at the focus. The title of the main menu that holds the
/// item lights up for a moment.
QWPLATFORM_EXPORT bool performKeyEquivalent(QMenu &menu, const QKeyEvent &event);

} // namespace platform
