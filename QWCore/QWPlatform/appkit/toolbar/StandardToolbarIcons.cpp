#include "StandardToolbarIcons.h"

#include "QWPlatform/appkit/TintedIcon.h"
#include "Toolbar.h"

#include <array>

namespace platform
{

namespace
{
struct StandardItem
{
    const QString &identifier;
    const char *title;
    const char *drawing; ///< Path on the 24 grid.
};

const std::array standardItems{
    StandardItem{Toolbar::SeparatorItem, "Separator", "M12 4v16"},
    StandardItem{Toolbar::SpaceItem, "Space", "M6 6h12v12H6z"},
    StandardItem{Toolbar::FlexibleSpaceItem, "Flexible Space",
                 "M3 6h18v12H3zM9.5 9.5L7 12l2.5 2.5M14.5 9.5L17 12l-2.5 2.5M7 12h10"},
};

constexpr auto picture =
    "<svg xmlns='http://www.w3.org/2000/svg' width='24' height='24' viewBox='0 0 24 24' fill='none' "
    "stroke='currentColor' stroke-width='1.75' stroke-linecap='round' stroke-linejoin='round'>"
    "<path d='%1'/></svg>";

const StandardItem *itemFor(const QString &identifier)
{
    const auto found = std::find_if(standardItems.begin(), standardItems.end(),
                                    [&](const StandardItem &i) { return i.identifier == identifier; });
    return found == standardItems.end() ? nullptr : found;
}
} // namespace

QIcon standardToolbarIcon(const QString &identifier)
{
    const StandardItem *const item = itemFor(identifier);
    return item ? tintedIconFromSvg(QString(picture).arg(QString(item->drawing)).toUtf8()) : QIcon();
}

QString standardToolbarTitle(const QString &identifier)
{
    const StandardItem *const item = itemFor(identifier);
    return item ? QString(item->title) : QString();
}

} // namespace platform
