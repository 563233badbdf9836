#include "QWMenuSorting.h"

#include <QWPlatform/appkit/MenuItem.h>

#include <QMenu>

#include <algorithm>
#include <optional>

namespace QWMenuSorting
{

namespace
{
/// The C locale orders by bytes; then English is what people expect.
QLocale sortingLocale()
{
    const QLocale locale;
    return locale.language() == QLocale::C ? QLocale(QLocale::English) : locale;
}

QCollator makeCollator(const QLocale &locale)
{
    QCollator collator(locale);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    return collator;
}

/// Made once for a language: opening one takes longer than sorting a small menu.
const QCollator &collator()
{
    thread_local std::optional<QCollator> made;
    const QLocale locale = sortingLocale();
    if (!made || made->locale() != locale)
        made = makeCollator(locale);
    return *made;
}
} // namespace

int compareTitles(const QString &left, const QString &right)
{
    return collator().compare(left, right);
}

QCollatorSortKey sortKey(const QString &title)
{
    return collator().sortKey(title);
}

platform::MenuItem *addItemSortedWithTitle(QMenu &menu, const QString &title)
{
    const QList<QAction *> items = menu.actions();
    const auto place =
        std::upper_bound(items.begin(), items.end(), title, [](const QString &added, const QAction *item) {
            return compareTitles(added, platform::titleOf(*item)) < 0;
        });
    return platform::insertMenuItem(menu, place == items.end() ? nullptr : *place, title);
}

} // namespace QWMenuSorting
