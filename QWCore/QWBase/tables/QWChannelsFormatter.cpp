#include "QWChannelsFormatter.h"

#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QLocale>
#include <QVariant>

QWChannelsFormatter::~QWChannelsFormatter() = default;

QString QWChannelsFormatter::stringForObjectValue(const QVariant &value) const
{
    const qlonglong channels = platform::isNumber(value) ? platform::integerOf(value) : 0;
    if (channels < 1)
        return {};
    if (channels > 2)
        return QLocale().toString(channels);
    return platform::localized(channels == 1 ? "Mono" : "Stereo");
}
