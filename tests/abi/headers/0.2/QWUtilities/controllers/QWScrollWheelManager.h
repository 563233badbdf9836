#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>
#include <QVariant>

#include <memory>

namespace platform
{
class Panel;
struct ScrollEvent;
} // namespace platform

/// Lets the user bind scroll wheel movements, by axis and held modifiers, to actions of the host, and sends them. One
/// per System. Main thread.
///
/// The actions to choose from are the host's resource "scrollWheelActions.xml", an array of dictionaries: "title", the
/// text in the menu, and "action", such as "zoom:". A binding is a dictionary:
///
///     vertical   boolean  the axis
///     modifiers  integer  those that must be held, and no others: Caps Lock 0x10000, Shift 0x20000, Control 0x40000,
///                         Option 0x80000, Command 0x100000
///     action     string   what is sent
///     reverse    boolean  the amount is negated before
///
/// The user's own bindings are kept in user defaults ("Scroll Wheel Actions"); until there are any, those of the host's
/// resource "scrollWheelActionDefaults.xml" count. A resource that is missing or broken counts as empty.
class QWUTILITIES_EXPORT QWScrollWheelManager : public QObject
{
    Q_OBJECT

public:
    /// The one object of the current System, made on first use.
    static QWScrollWheelManager &defaultManager();

    /// To be called once in the launch: loads the bindings and the panel, and opens the panel if it was open at the end
    /// of the last run. Later calls change nothing.
    static void loadActions();

    /// Sends @p target, which is not owned, the action of the first binding for the event, with the amount as double:
    /// `Q_INVOKABLE void zoom(double lines)` for "zoom:". A QWheelEvent will do. False when there is no such binding,
    /// or when the target does not respond to its action; later bindings are then not tried.
    static bool scrollWheelEventTarget(const platform::ScrollEvent &event, QObject *target);

    /// Brings the panel to the front and makes it key. Nothing before loadActions().
    static void openPanel();

    /// Closes the panel when it is key, else opens it.
    static void togglePanel();

    /// Saves nothing: applicationWillTerminate() does.
    ~QWScrollWheelManager() override;

    /// Appends a binding of the vertical axis without modifiers to the first action there is; what the panel's button
    /// sends. The sender is not looked at.
    Q_INVOKABLE void addAction(QObject *sender = nullptr);

    /// Removes the selected binding; nothing without a selection. The sender is not looked at.
    Q_INVOKABLE void removeAction(QObject *sender = nullptr);

    /// Saves bindings, frame and whether the panel is open: here only, so what is edited in a run that does not end
    /// normally is lost. Follows the application's aboutToQuit().
    void applicationWillTerminate();

    /// The bindings in order, as they would be saved.
    QVariantList actions() const;

    /// What the table's column named @p identifier shows in @p row: for "axis" and "action" the index of the chosen
    /// item (-1: none), for "command", "option", "shift", "control", "caps lock" and "reverse" a boolean; nothing for
    /// other identifiers and rows, and before there is a panel.
    QVariant tableViewObjectValueForTableColumnRow(const QString &identifier, int row) const;
    /// As if the user had chosen @p value there; a column of a modifier toggles whatever the value is.
    void tableViewSetObjectValueForTableColumnRow(const QVariant &value, const QString &identifier, int row);

    /// The window in which bindings are edited. Owned here; null before loadActions(), or when the interface file
    /// "QWScrollWheelManager.ui" cannot be used.
    platform::Panel *panel() const;

protected:
    /// For defaultManager(), which makes the one there is.
    QWScrollWheelManager();

private:
    class Private;
    std::unique_ptr<Private> d;
};
