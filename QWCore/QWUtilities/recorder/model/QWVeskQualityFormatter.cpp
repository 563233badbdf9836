#include "QWVeskQualityFormatter.h"

#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QVariant>

#include <array>

QWVeskQualityFormatter::~QWVeskQualityFormatter() = default;

QString QWVeskQualityFormatter::stringForObjectValue(const QVariant &value) const
{
    static constexpr std::array<const char *, 3> names{"High", "Medium", "Low"};
    const qlonglong quality = platform::isNumber(value) ? platform::integerOf(value) : -1;
    if (quality < 0 || quality >= static_cast<qlonglong>(names.size()))
        return QStringLiteral("unknown quality"); // a word for whoever looks into it, in no language but this
    return platform::localized(QString::fromLatin1(names[static_cast<size_t>(quality)]));
}
