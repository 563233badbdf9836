#include "DefinitionErrors.h"

#include "QWUtilities/shortcuts/QWShortcutGroup.h"
#include "QWUtilities/shortcuts/menus/MainMenuItems.h"

#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/appkit/ResponderChain.h>

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

#include <algorithm>

namespace qw::DefinitionErrors
{

namespace
{
QStringList inShortcut(const QVariant &shortcut, const QString &place)
{
    if (shortcut.typeId() != QMetaType::QVariantMap)
        return {place + " is no dictionary"};
    QStringList errors;
    for (const char *const key : {"name", "action"}) {
        if (shortcut.toMap().value(key).toString().isEmpty())
            errors.append(QString("%1 has no \"%2\"").arg(place, key));
    }
    return errors;
}

QStringList inGroup(const QVariant &group, qsizetype number)
{
    if (group.typeId() != QMetaType::QVariantMap)
        return {QString("group %1 is no dictionary").arg(number)};
    const QVariantMap state = group.toMap();
    const QString name = state.value("name").toString();
    const QVariant shortcuts = state.value("shortcuts");
    QStringList errors;
    if (name.isEmpty())
        errors.append(QString("group %1 has no \"name\"").arg(number));
    if (shortcuts.typeId() != QMetaType::QVariantList)
        errors.append(QString("the \"shortcuts\" of group %1 (\"%2\") are no array").arg(number).arg(name));
    const QVariantList members = shortcuts.toList();
    for (qsizetype i = 0; i < members.size(); ++i)
        errors += inShortcut(members[i], QString("shortcut %1 of group %2 (\"%3\")").arg(i + 1).arg(number).arg(name));
    return errors;
}

bool anyWindowAnswers(const platform::Selector &action)
{
    const QWidgetList widgets = QApplication::allWidgets();
    return std::any_of(widgets.begin(), widgets.end(), [&](const QWidget *widget) {
        return platform::respondsTo(widget, action) || platform::respondsTo(platform::delegateOf(widget), action);
    });
}

bool isAnswered(const platform::Selector &action)
{
    return action.isNull() || platform::targetForAction(action) || anyWindowAnswers(action);
}

QStringList unknownActions(const QWShortcutGroup &group)
{
    QStringList errors;
    for (const auto &shortcut : group.shortcuts()) {
        if (!isAnswered(shortcut->action()))
            errors.append(
                QString("nobody answers the action \"%1\" of \"%2\"").arg(shortcut->action().name(), shortcut->name()));
    }
    return errors;
}

bool hasMenu(const QMenuBar &bar, const QString &title)
{
    const QList<QAction *> items = bar.actions();
    return std::any_of(items.begin(), items.end(),
                       [&](const QAction *item) { return item->menu() && platform::titleOf(*item) == title; });
}

QStringList unknownItems(const QWShortcutGroup &group)
{
    const QList<QMenuBar *> bars = platform::menuBars();
    if (!group.isMenu() || bars.isEmpty())
        return {};
    QStringList errors;
    if (std::none_of(bars.begin(), bars.end(), [&](const QMenuBar *bar) { return hasMenu(*bar, group.name()); }))
        errors.append(QString("the main menu has no menu \"%1\"").arg(group.name()));
    for (const auto &shortcut : group.shortcuts()) {
        if (MainMenuItems::itemsAtPath(shortcut->name().split('>')).isEmpty())
            errors.append(QString("no menu has an item \"%1\" that can have a key").arg(shortcut->name()));
    }
    return errors;
}
} // namespace

QStringList inList(const QVariant &list)
{
    if (!list.isValid())
        return {"it cannot be read, or is no property list"};
    if (list.typeId() != QMetaType::QVariantList)
        return {"it is no array of groups"};
    QStringList errors;
    const QVariantList groups = list.toList();
    for (qsizetype i = 0; i < groups.size(); ++i)
        errors += inGroup(groups[i], i + 1);
    return errors;
}

QStringList unknownNames(const std::vector<std::shared_ptr<QWShortcutGroup>> &groups)
{
    const MainMenuItems::Batch batch;
    QStringList errors;
    for (const auto &group : groups)
        errors += unknownItems(*group) + unknownActions(*group);
    return errors;
}

void tell(const QStringList &errors)
{
    for (const QString &error : errors)
        qWarning("Shortcut definition \"shortcuts.plist\": %s", qPrintable(error));
}

} // namespace qw::DefinitionErrors
