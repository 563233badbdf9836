#pragma once

#include <QTreeView>

namespace qw
{

/// The outline of groups and shortcuts: check boxes in a column of their own, then the names, keys as keycaps at the
/// right. Return edits, Space switches on and off, Delete clears, the menu key opens a menu; whenever those keys are
/// nobody's shortcuts.
class ShortcutOutlineView : public QTreeView
{
    Q_OBJECT

public:
    explicit ShortcutOutlineView(QWidget *parent = nullptr);
    ~ShortcutOutlineView() override;

    void setModel(QAbstractItemModel *model) override;

    /// What an empty outline says, also to a screen reader; called with each change of the model.
    void setEmptyText(const QString &text);

    void setAllExpanded(bool expanded);
    void selectFirst(); ///< The first shortcut that shows, else the first group.

    /// Lets a screen reader say the row of @p index, which has changed; nothing for no index.
    void tellName(const QModelIndex &index);

    /// Which rows are open and where the cursor is, by name; kept over a reset of the model.
    struct State
    {
        QStringList expanded;
        QStringList current; ///< Names from the group down.
        int scrollPosition = 0;
    };
    State state() const;
    void setState(const State &state);

Q_SIGNALS:
    void editRequested(const QModelIndex &index);
    void toggleRequested(const QModelIndex &index);
    void clearRequested(const QModelIndex &index);
    void menuRequested(const QModelIndex &index, const QPoint &position); ///< In the viewport.

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void _arrangeColumns();
    QModelIndex _indexNamed(const QStringList &names) const;

    QString m_emptyText;
};

} // namespace qw
