#include "OneLineLabel.h"

#include <QPainter>
#include <QStyle>

namespace qw
{

OneLineLabel::OneLineLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

OneLineLabel::~OneLineLabel() = default;

QSize OneLineLabel::sizeHint() const
{
    return {0, fontMetrics().height()};
}

QSize OneLineLabel::minimumSizeHint() const
{
    return sizeHint();
}

void OneLineLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QString line = text();
    line.replace('\n', ' ');
    style()->drawItemText(&painter, rect(), int(Qt::AlignLeft | Qt::AlignVCenter), palette(), isEnabled(),
                          fontMetrics().elidedText(line, Qt::ElideMiddle, width()), foregroundRole());
}

} // namespace qw
