#include "Announcement.h"

#include <QAccessible>
#include <QWidget>

namespace qw
{

void announce(QWidget &widget, const QString &text)
{
    widget.setAccessibleName(text);
    QAccessibleEvent alert(&widget, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace qw
