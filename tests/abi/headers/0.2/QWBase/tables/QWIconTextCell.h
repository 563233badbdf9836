#pragma once

#include <QWBase/qwbase_export.h>

#include <QIcon>
#include <QStyledItemDelegate>

#include <memory>

/// Draws cells as an image with a text after it, which ends in "…" where it does not fit. Main thread.
class QWBASE_EXPORT QWIconTextCell : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// In the view's font, without an image.
    explicit QWIconTextCell(QObject *parent = nullptr);
    ~QWIconTextCell() override;

    /// Drawn before the texts of all cells that bring none of their own (Qt::DecorationRole); null for none.
    const QIcon &image() const;
    void setImage(const QIcon &image); ///< Sets image().

    /// Of the texts; as the view's, where it was not set.
    void setFont(const QFont &font);

protected:
    /// Puts image and font into @p option. A class that shows some cells without the image takes it out there.
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
