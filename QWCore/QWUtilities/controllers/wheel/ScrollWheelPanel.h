#pragma once

#include "ScrollWheelModel.h"

#include <memory>
#include <vector>

class QAbstractButton;
class QMenu;
class QWScrollWheelManager;

namespace platform
{
class Panel;
class WindowOpenState;
} // namespace platform

namespace qw
{

class ScrollWheelTable;

/// The window in which the bindings are edited. User defaults remember whether it is open, and where.
class ScrollWheelPanel
{
public:
    /// From the interface file "QWScrollWheelManager", whose actions @p owner takes; null when that cannot be used.
    /// None of the arguments is owned, all outlive the window.
    static std::unique_ptr<ScrollWheelPanel>
    load(QWScrollWheelManager &owner, std::vector<ScrollWheelBinding> &bindings, QMenu &axes, QMenu &actions);
    ~ScrollWheelPanel();
    ScrollWheelPanel(const ScrollWheelPanel &) = delete;
    ScrollWheelPanel &operator=(const ScrollWheelPanel &) = delete;

    /// Where the window stands, and that it is closed, unless user defaults say otherwise.
    static void registerDefaults();

    platform::Panel &window() const { return *m_panel; }
    ScrollWheelModel &model() { return m_model; }

    void open();

    /// If it was open at the end of the last run.
    void openAgain();

    /// Closes it as its close button does when it is key, else opens it.
    void toggle();

    /// -1 when none is selected.
    int selectedRow() const;
    void scrollToBottom();

    /// Into user defaults, for the next run.
    void store() const;

private:
    /// What the interface file holds; the widgets belong to the first.
    struct Outlets
    {
        std::unique_ptr<QWidget> nib;
        platform::Panel *panel = nullptr;
        ScrollWheelTable *table = nullptr;
        QAbstractButton *removeActionButton = nullptr;
    };

    static Outlets _loadNib(QWScrollWheelManager &owner);
    ScrollWheelPanel(Outlets outlets, const QWScrollWheelManager &owner, std::vector<ScrollWheelBinding> &bindings,
                     QMenu &axes, QMenu &actions);

    void _setImages(const QWScrollWheelManager &owner);
    void _restoreFrame();
    void tableViewSelectionDidChange();

    std::unique_ptr<QWidget> m_nib;
    platform::Panel *m_panel;
    ScrollWheelTable *m_table;
    QAbstractButton *m_removeActionButton;
    ScrollWheelModel m_model;
    std::unique_ptr<platform::WindowOpenState> m_openState;
};

} // namespace qw
