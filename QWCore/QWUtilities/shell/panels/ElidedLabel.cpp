#include "ElidedLabel.h"

#include <QPainter>
#include <QStyle>

namespace qw
{

ElidedLabel::ElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    QFont unhinted = font();
    unhinted.setHintingPreference(QFont::PreferNoHinting); // large thin letters keep their spacing
    setFont(unhinted);
}

ElidedLabel::~ElidedLabel() = default;

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    const QString shown = fontMetrics().elidedText(text().simplified(), Qt::ElideMiddle, contentsRect().width());
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(), shown,
                          foregroundRole());
}

} // namespace qw
