#include "QWIconTextCell.h"

#include <QFont>

#include <optional>

class Q_DECL_HIDDEN QWIconTextCell::Private
{
public:
    QIcon m_image;
    std::optional<QFont> m_font;
};

QWIconTextCell::QWIconTextCell(QObject *parent)
    : QStyledItemDelegate(parent)
    , d(std::make_unique<Private>())
{
}

QWIconTextCell::~QWIconTextCell() = default;

const QIcon &QWIconTextCell::image() const
{
    return d->m_image;
}

void QWIconTextCell::setImage(const QIcon &image)
{
    d->m_image = image;
}

void QWIconTextCell::setFont(const QFont &font)
{
    d->m_font = font;
}

void QWIconTextCell::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    if (d->m_font) {
        option->font = *d->m_font;
        option->fontMetrics = QFontMetrics(*d->m_font);
    }
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideRight;
    option->text.replace(QChar::LineSeparator, ' '); // what the base class made of line breaks
    if (option->icon.isNull() && !d->m_image.isNull()) {
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->icon = d->m_image;
        option->decorationSize = d->m_image.actualSize(option->decorationSize);
    }
}
