#pragma once

#include "QWTableColumn.h"

#include <QWBase/qwbase_export.h>

#include <QTableView>

#include <memory>

/// A table whose rows are chosen and whose columns go by identifiers: each shows the column of the model whose
/// QAbstractItemModel::headerData() has its identifier as QWTableColumn::IdentifierRole, in the order, width and form
/// that the column says. Columns are moved by dragging their headers and by the keyboard; those that the corner menu
/// holds are shown and hidden there. Tab leads from the rows to the header (Left and Right choose a column, Space
/// clicks it, Control with Left and Right moves it) and to the corner. Quick with 100,000 rows. Main thread.
///
/// A class of tables says once how its columns look, in tableColumnForIdentifierWidth():
///
///     table.addCornerMenuItemForColumnIdentifier("Length", "length");
///     table.addTableColumn(table.tableColumnForIdentifierWidth("title", 158));
///     table.setModel(&takes);
///     table.setColumnState(defaults.object("Takes Columns"));
class QWBASE_EXPORT QWTableView : public QTableView
{
    Q_OBJECT

public:
    /// Without columns; the corner shows once there is something in its menu.
    explicit QWTableView(QWidget *parent = nullptr);
    ~QWTableView() override;

    /// Not owned. QAbstractItemView::model() is another one then, with the texts that show; rows are the same.
    void setModel(QAbstractItemModel *model) override;

    /// Those that show, first to last, with their present widths. A column that the model lacks stays and shows
    /// nothing.
    QList<QWTableColumn> tableColumns() const;

    /// Adds @p column behind the others; nothing for one without an identifier, or of one that shows.
    void addTableColumn(const QWTableColumn &column);
    void removeTableColumn(const QString &identifier); ///< Nothing for one that does not show.

    /// Which columns show, their order and widths, as a property list.
    QVariantList columnState() const;

    /// Shows the columns of @p state instead of those that show. Safe with any value: columns that
    /// tableColumnForIdentifierWidth() does not know and those named twice are passed over, widths are brought within
    /// reason, columns that the corner menu does not hold stay where @p state leaves them out, and what names no column
    /// that is known changes nothing.
    void setColumnState(const QVariant &state);

    /// Lets the user show and hide the column; @p title as it reads, in the user's language.
    void addCornerMenuItemForColumnIdentifier(const QString &title, const QString &identifier);

    /// A new column, whenever one is needed: for the corner menu and for a stored state. @p width in points, 0 where
    /// there is none to go by. One without an identifier for a column that is not known, which is all that this
    /// knows.
    virtual QWTableColumn tableColumnForIdentifierWidth(const QString &identifier, double width) const;

    /// Shows in the header that rows are sorted by this column; by none for "".
    void setSortIndicator(const QString &identifier, Qt::SortOrder order);

    /// Rows of the selection, ascending; quick, however many there are.
    QList<int> selectedRows() const;

    /// Selects these rows instead, quick too; the first becomes the current one. Rows that there are not are passed
    /// over.
    void selectRows(const QList<int> &rows);

Q_SIGNALS:
    void didClickTableColumn(const QString &identifier); ///< A header, by mouse or keyboard.
    void selectionDidChange();                           ///< Other rows are selected.
    void columnsDidChange();                             ///< The user or the program changed tableColumns().

protected:
    void changeEvent(QEvent *event) override;       ///< Rows are as high as the font wants.
    void focusInEvent(QFocusEvent *event) override; ///< Tells a screen reader of the current row.
    void keyPressEvent(QKeyEvent *event) override;  ///< Leaves Return to the window.

    /// Home and End lead to the first and last row.
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

    /// Tells selectionDidChange().
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
