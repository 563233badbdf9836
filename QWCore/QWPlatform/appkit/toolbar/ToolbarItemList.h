#pragma once

#include <QListWidget>

namespace platform
{

class Toolbar;

/// A row of pictures of toolbar items. Items are dragged within it and to the other list; a drop changes nothing by
/// itself but is told.
class ToolbarItemList : public QListWidget
{
    Q_OBJECT

public:
    ToolbarItemList(Toolbar &toolbar, QWidget *parent);

    /// Shows these items, the current one staying where it was. Unknown identifiers are left out.
    void showItems(const QStringList &identifiers);

    QString currentIdentifier() const; ///< "" when none is current.

Q_SIGNALS:
    /// An item was dropped before row @p row; @p fromRow is its row when it came from this list, else -1.
    void itemDropped(const QString &identifier, int fromRow, int row);

    /// An item was double-clicked, or Return or Space pressed.
    void itemChosen();

protected:
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QList<QListWidgetItem *> &items) const override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QListWidgetItem *_makeItem(const QString &identifier);
    void _judgeDrag(QDropEvent &event) const;
    int _rowAt(const QPoint &position) const;

    Toolbar &m_toolbar;
};

} // namespace platform
