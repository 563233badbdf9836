#pragma once

#include "PanelFrame.h"
#include "ShortcutEditor.h"
#include "ShortcutOutlineModel.h"

#include <QObject>

#include <memory>

class QWKeyboardShortcuts;

namespace platform
{
class Panel;
class WindowOpenState;
} // namespace platform

namespace qw
{

class CaptureSheet;
class KeyReturn;
class SavePresetSheet;
class ShortcutOutlineView;
class ShortcutSearch;

/// The editor's window and its two sheets, from the interface file "QWKeyboardShortcuts", loaded when it first opens.
/// Remembers in user defaults whether it is open, and where. Without a complete interface file nothing opens.
class ShortcutEditorPanel : public QObject, public ShortcutEditor
{
    Q_OBJECT

public:
    /// @p registry outlives this.
    explicit ShortcutEditorPanel(QWKeyboardShortcuts &registry);
    ~ShortcutEditorPanel() override;

    void open() override;
    void toggle() override;
    QWidget *window() const override;
    void filePanelDidEnd() override;
    QWidget *setShortcutPanel() const override;
    void doSetShortcut(const platform::KeyEvent &event) override;
    QString searchString() const override;
    void clearSearchString() override;
    void displayResultsDidChange() override;
    QMenu *presetsMenu() const override;
    QString presetName() const override;

    Q_INVOKABLE void searchChanged(QObject *sender);
    Q_INVOKABLE void editShortcut(QObject *sender); ///< Of the row at the cursor.
    Q_INVOKABLE void clearShortcut(QObject *sender);
    Q_INVOKABLE void clearOtherShortcut(QObject *sender);
    Q_INVOKABLE void confirmSetShortcut(QObject *sender);
    Q_INVOKABLE void saveShortcuts(QObject *sender);
    Q_INVOKABLE void closeSaveShortcutPanel(QObject *sender);

    /// Sees the window move.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Outlets;

    bool _loadNib();
    void awakeFromNib();
    void _makeSheets();
    void _connectOutline();
    void _makeSearch();
    QString _emptyText() const;
    void _edit(const QModelIndex &index);
    void _setEnabled(const QModelIndex &index, bool enabled);
    void _clearKey(const QModelIndex &index);
    void _showRowMenu(const QModelIndex &index, const QPoint &position);
    void windowDidMove();
    void windowWillClose();
    void applicationWillTerminate();

    QWKeyboardShortcuts &m_registry;
    PanelFrame m_frame;
    std::unique_ptr<QWidget> m_nib;
    std::unique_ptr<Outlets> m_outlets; ///< Null before the first opening.
    ShortcutOutlineModel m_model;
    std::unique_ptr<ShortcutSearch> m_search;
    std::unique_ptr<KeyReturn> m_keyReturn;
    std::unique_ptr<CaptureSheet> m_captureSheet;
    std::unique_ptr<SavePresetSheet> m_saveSheet;
    std::unique_ptr<platform::WindowOpenState> m_openState;
    QPoint m_position; ///< Where the window was put, or moved to.
};

} // namespace qw
