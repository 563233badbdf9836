#include "OneLineLabel.h"

#include <QPainter>
#include <QStyle>

namespace qw
{

namespace
{
constexpr int longestEnd = 500; ///< Characters at either end; laying out a text of megabytes takes seconds.

QString shortened(const QString &text)
{
    return text.size() <= 2 * longestEnd ? text : text.left(longestEnd) + QChar(0x2026) + text.right(longestEnd);
}
} // namespace

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
    QString line = shortened(text());
    line.replace('\n', ' ');
    style()->drawItemText(&painter, rect(), int(Qt::AlignLeft | Qt::AlignVCenter), palette(), isEnabled(),
                          fontMetrics().elidedText(line, Qt::ElideMiddle, width()), foregroundRole());
}

} // namespace qw
