#pragma once

#include <QTableView>

namespace qw
{

class ScrollWheelModel;

/// The table of scroll wheel bindings: columns as narrow as their headers, the action's taking what is left. The arrow
/// keys go from cell to cell, Tab goes through a row and leaves the table at its end.
class ScrollWheelTable : public QTableView
{
    Q_OBJECT

public:
    explicit ScrollWheelTable(QWidget *parent = nullptr);

    /// Not owned.
    void setBindings(ScrollWheelModel &model);

    /// -1 when none is selected.
    int selectedRow() const;
    int numberOfSelectedRows() const;

    void dataChanged(const QModelIndex &first, const QModelIndex &last, const QList<int> &roles = {}) override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _fitColumns();

    ScrollWheelModel *m_bindings = nullptr;
};

} // namespace qw
