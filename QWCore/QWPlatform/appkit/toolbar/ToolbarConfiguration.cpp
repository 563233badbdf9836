#include "ToolbarConfiguration.h"

#include "QWPlatform/System.h"
#include "QWPlatform/foundation/UserDefaults.h"

#include <QVariantMap>

namespace platform
{

namespace
{
constexpr auto itemsKey = "TB Item Identifiers";
constexpr auto defaultItemsKey = "TB Default Item Identifiers";
constexpr auto displayModeKey = "TB Display Mode";
constexpr auto iconSizeKey = "TB Icon Size Mode";
constexpr auto sizeKey = "TB Size Mode";
constexpr auto shownKey = "TB Is Shown";

constexpr int highestDisplayMode = 3;
constexpr int regularSize = 1;

QString defaultsKey(const QString &toolbarIdentifier)
{
    return "NSToolbar Configuration " + toolbarIdentifier;
}

QVariantMap storedDictionary(const QString &toolbarIdentifier)
{
    const QVariant stored = System::current().userDefaults().object(defaultsKey(toolbarIdentifier));
    return stored.typeId() == QMetaType::QVariantMap ? stored.toMap() : QVariantMap();
}

/// None unless @p value is an array of strings only.
std::optional<QStringList> strings(const QVariant &value)
{
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList();
    if (value.typeId() != QMetaType::QVariantList)
        return std::nullopt;
    const QVariantList list = value.toList();
    const auto isString = [](const QVariant &entry) { return entry.typeId() == QMetaType::QString; };
    if (!std::all_of(list.begin(), list.end(), isString))
        return std::nullopt;
    return value.toStringList();
}

int displayModeIn(const QVariant &value)
{
    bool isNumber = false;
    const int mode = value.typeId() == QMetaType::QString ? 0 : value.toInt(&isNumber);
    return isNumber && mode >= 0 && mode <= highestDisplayMode ? mode : 0;
}

/// Both a boolean and an integer are met.
bool shownIn(const QVariant &value)
{
    return !value.canConvert<bool>() || value.typeId() == QMetaType::QString || value.toBool();
}

QVariantList listOf(const QStringList &strings)
{
    return {strings.begin(), strings.end()};
}
} // namespace

ToolbarConfiguration ToolbarConfiguration::load(const QString &toolbarIdentifier)
{
    const QVariantMap stored = storedDictionary(toolbarIdentifier);
    ToolbarConfiguration configuration;
    configuration.itemIdentifiers = strings(stored.value(itemsKey));
    configuration.defaultItemIdentifiers = strings(stored.value(defaultItemsKey)).value_or(QStringList());
    configuration.displayMode = displayModeIn(stored.value(displayModeKey));
    configuration.isShown = shownIn(stored.value(shownKey));
    return configuration;
}

void ToolbarConfiguration::save(const QString &toolbarIdentifier) const
{
    QVariantMap dictionary = storedDictionary(toolbarIdentifier);
    dictionary.insert(itemsKey, listOf(itemIdentifiers.value_or(QStringList())));
    dictionary.insert(defaultItemsKey, listOf(defaultItemIdentifiers));
    dictionary.insert(displayModeKey, displayMode);
    dictionary.insert(iconSizeKey, regularSize);
    dictionary.insert(sizeKey, regularSize);
    dictionary.insert(shownKey, isShown);
    System::current().userDefaults().setObject(defaultsKey(toolbarIdentifier), dictionary);
}

} // namespace platform
