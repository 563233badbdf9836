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
/// the item as sender, to the receiver found at that moment. Main thread.
///
/// Menus of 10,000 items are made while the user waits: so the members stand here, without a block of memory of their
/// own; hosts reach them by calls only.
class QWPLATFORM_EXPORT MenuItem : public QAction
{
    Q_OBJECT
    Q_PROPERTY(qlonglong tag READ tag)                            ///< tag()
    Q_PROPERTY(QVariant representedObject READ representedObject) ///< representedObject()

public:
    /// Event modifier bits that a key equivalent may have.
    enum Modifier : quint32
    {
        Shift = 0x20000,   ///< The Shift key.
        Control = 0x40000, ///< The Meta key (Qt's MetaModifier).
        Option = 0x80000,  ///< The Alt key.
        Command = 0x100000 ///< The Ctrl key, the main shortcut modifier (Qt's ControlModifier).
    };

    /// An item without action, tag and key equivalent; addMenuItem() makes one in its menu.
    explicit MenuItem(const QString &title = {}, QObject *parent = nullptr);
    ~MenuItem() override;

    /// As given: "&" is a character like any other.
    const QString &title() const;
    /// Shows @p title too, with its "&" doubled, without line breaks, and shortened in the middle above 120 characters.
    void setTitle(const QString &title);

    /// A number for the receiver, which reads it from the sender; 0 at first.
    qlonglong tag() const;
    void setTag(qlonglong tag); ///< Sets tag().

    /// Whatever the item stands for, for the receiver; invalid at first.
    const QVariant &representedObject() const;
    void setRepresentedObject(const QVariant &object); ///< Sets representedObject().

    /// Selector that is sent when the item is chosen; null at first: nothing is sent.
    const Selector &action() const;
    void setAction(const Selector &action); ///< Sets action().

    /// Null: the responder chain finds the receiver. Not owned; one that has gone receives nothing, and neither does
    /// the chain in its place.
    QObject *target() const;
    void setTarget(QObject *target); ///< Sets target().

    /// One character, lower case for letters, or a platform function key (U+F700 to U+F747); "" for none. Shown beside
    /// the title in the desktop's own wording, but not registered as the QAction's shortcut: the application performs
    /// the items of the main menu.
    const QString &keyEquivalent() const;
    /// Bits of Modifier.
    quint32 keyEquivalentModifierMask() const;
    /// Sets both keyEquivalent() and keyEquivalentModifierMask().
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

/// New item at the end of @p menu, which owns it; no key equivalent when @p keyEquivalent is "".
QWPLATFORM_EXPORT MenuItem *addMenuItem(QMenu &menu, const QString &title, const Selector &action = {},
                                        const QString &keyEquivalent = {}, quint32 modifierMask = MenuItem::Command);
/// New item before @p before, or at the end when that is null; owned by the menu.
QWPLATFORM_EXPORT MenuItem *insertMenuItem(QMenu &menu, QAction *before, const QString &title,
                                           const Selector &action = {});

/// A submenu titled @p title as given; owned by @p menu.
QWPLATFORM_EXPORT QMenu *addSubmenu(QMenu &menu, const QString &title);

/// Enables and disables the items of @p menu that have an action, as their receivers say.
QWPLATFORM_EXPORT void validateMenu(QMenu &menu);

/// From now on validateMenu() runs whenever @p menu opens. The functions above see to it; callers that add their own
/// MenuItems by other means call it once for the menu.
QWPLATFORM_EXPORT void setAutoenablesItems(QMenu &menu);

} // namespace platform
