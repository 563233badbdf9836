#pragma once

#include <QDialog>

class QComboBox;
class QLayout;
class QPushButton;

namespace platform
{

class Toolbar;
class ToolbarItemList;

/// The sheet in which the user chooses a toolbar's items. What is done there shows in the toolbar at once: drag,
/// double-click, or the keyboard (Return adds, Delete removes, Ctrl with the arrows moves).
class ToolbarCustomizationPanel : public QDialog
{
    Q_OBJECT

public:
    explicit ToolbarCustomizationPanel(Toolbar &toolbar);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLayout *_makeAvailable();
    QLayout *_makeShown();
    QLayout *_makeBottom();
    QPushButton *_addButton(const QString &title, void (ToolbarCustomizationPanel::*slot)());
    void _refresh();
    void _updateButtons();
    void _add();
    void _remove();
    void _moveLeft() { _move(-1); }
    void _moveRight() { _move(1); }
    void _restoreDefaults();
    void _move(int steps);
    void _droppedOnShown(const QString &identifier, int fromRow, int row);
    void _droppedOnAvailable(const QString &identifier, int fromRow);
    void _chooseDisplayMode(int index);

    Toolbar &m_toolbar;
    ToolbarItemList *m_available;
    ToolbarItemList *m_shown;
    QPushButton *m_addButton;
    QPushButton *m_removeButton;
    QPushButton *m_leftButton;
    QPushButton *m_rightButton;
    QComboBox *m_displayMode;
};

} // namespace platform
