#include "MenuStyle.h"

#include <QApplication>
#include <QHash>
#include <QMenu>
#include <QPointer>
#include <QStyleFactory>

#include <memory>

namespace platform
{

namespace
{
/// Of the toolkit's style that @p own is, one for all menus; null where it is none of these.
QStyle *menuStyleLike(const QStyle &own)
{
    static QHash<QString, QPointer<QStyle>> made;
    QPointer<QStyle> &style = made[own.name()];
    if (style)
        return style;
    auto copy = std::unique_ptr<QStyle>(QStyleFactory::create(own.name()));
    if (!copy || copy->metaObject() != own.metaObject())
        return nullptr;
    style = new MenuStyle(copy.release());
    style->setParent(qApp);
    return style;
}
} // namespace

/// The name tells which style was chosen.
MenuStyle::MenuStyle(QStyle *style)
    : QProxyStyle(style)
{
    if (style)
        setObjectName(style->objectName());
}

int MenuStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returnData) const
{
    return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, returnData);
}

void letScroll(QMenu &menu)
{
    if (menu.style()->styleHint(QStyle::SH_Menu_Scrollable, nullptr, &menu))
        return;
    if (QStyle *const style = menuStyleLike(*menu.style()))
        menu.setStyle(style);
}

} // namespace platform
