#include "QWBooleanFormatter.h"

#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QVariant>

QWBooleanFormatter::~QWBooleanFormatter() = default;

QString QWBooleanFormatter::stringForObjectValue(const QVariant &value) const
{
    if (!platform::isNumber(value))
        return {};
    return platform::localized(platform::truthOf(value) ? "Yes" : "No");
}
