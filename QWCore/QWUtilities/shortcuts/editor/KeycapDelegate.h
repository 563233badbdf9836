#pragma once

#include <QStyledItemDelegate>

namespace qw
{

/// Draws an item's key as keycaps at the right of its cell, a check box in the middle, and other items as usual, a
/// little higher.
class KeycapDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit KeycapDelegate(QObject *parent = nullptr);
    ~KeycapDelegate() override;

    /// Of a key with all modifiers.
    static int widestKey(const QFont &font);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

private:
    void _paintBox(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
};

} // namespace qw
