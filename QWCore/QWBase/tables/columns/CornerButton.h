#pragma once

#include <QToolButton>

namespace qw
{

class ColumnsMenu;

/// The button in the corner of a table, above its scroll bar, that opens the menu of columns: by mouse, Space, Return
/// or Down.
class CornerButton : public QToolButton
{
    Q_OBJECT

public:
    /// @p columns is not owned and outlives the button.
    CornerButton(const ColumnsMenu &columns, QWidget *parent);
    ~CornerButton() override;

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const ColumnsMenu &m_columns;
};

} // namespace qw
