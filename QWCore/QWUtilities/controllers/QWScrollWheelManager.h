#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>
#include <QVariant>

#include <memory>
#include <vector>

class QAbstractButton;
class QMenu;

namespace platform
{
class Panel;
class WindowOpenState;
struct ScrollEvent;
} // namespace platform

namespace qw
{
class ScrollWheelBinding;
class ScrollWheelModel;
class ScrollWheelTable;
} // namespace qw

/// Lets the user bind scroll wheel movements, by axis and held modifiers, to actions of the host, and sends them. One
/// per System. Main thread.
class QWUTILITIES_EXPORT QWScrollWheelManager : public QObject
{
    Q_OBJECT

public:
    static QWScrollWheelManager &defaultManager();

    /// To be called once in the launch: loads the bindings and the panel, and opens the panel if it was open at the end
    /// of the last run. Later calls change nothing.
    static void loadActions();

    /// Sends @p target, which is not owned, the action of the first binding for the event, with the amount as double:
    /// `Q_INVOKABLE void zoom(double lines)` for "zoom:". A QWheelEvent will do. False when there is no such binding,
    /// or when the target does not respond to its action; later bindings are then not tried.
    static bool scrollWheelEventTarget(const platform::ScrollEvent &event, QObject *target);

    static void openPanel();
    static void togglePanel();

    ~QWScrollWheelManager() override;

    bool _scrollWheelEventTarget(const platform::ScrollEvent &event, QObject *target) const;
    void _openPanel();
    void _togglePanel();

    Q_INVOKABLE void addAction(QObject *sender = nullptr);
    Q_INVOKABLE void removeAction(QObject *sender = nullptr);

    /// Saves bindings, frame and whether the panel is open: here only, so what is edited in a run that does not end
    /// normally is lost. Follows the application's aboutToQuit().
    void applicationWillTerminate();

    /// The bindings in order, as they would be saved.
    QVariantList actions() const;

    /// What the table's column named @p identifier shows in @p row; nothing for other identifiers and rows.
    QVariant tableViewObjectValueForTableColumnRow(const QString &identifier, int row) const;
    /// As if the user had chosen @p value there; a column of a modifier toggles whatever the value is.
    void tableViewSetObjectValueForTableColumnRow(const QVariant &value, const QString &identifier, int row);

    // Null before loadActions(), or when the interface file cannot be used.
    platform::Panel *panel() const { return m_panel; }
    qw::ScrollWheelTable *table() const { return m_table; }
    QAbstractButton *removeActionButton() const { return m_removeActionButton; }

protected:
    QWScrollWheelManager();

private:
    bool _loadNib();
    void awakeFromNib();
    void _loadActionMenu();
    void _loadBindings();
    void _makeTable();
    void _restoreFrame();
    void tableViewSelectionDidChange();

    std::unique_ptr<QWidget> m_nib;
    platform::Panel *m_panel = nullptr;
    qw::ScrollWheelTable *m_table = nullptr;
    QAbstractButton *m_removeActionButton = nullptr;
    std::vector<qw::ScrollWheelBinding> m_actions;
    std::unique_ptr<QMenu> m_axisMenu;
    std::unique_ptr<QMenu> m_actionMenu;
    std::unique_ptr<qw::ScrollWheelModel> m_model;
    std::unique_ptr<platform::WindowOpenState> m_openState;
    bool m_isLoaded = false; ///< Before, there is nothing to save.
};
