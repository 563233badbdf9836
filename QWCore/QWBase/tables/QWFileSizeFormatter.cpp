#include "QWFileSizeFormatter.h"

#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QLocale>
#include <QVariant>

#include <cmath>
#include <optional>

namespace
{
constexpr double largestSize = 9e18; ///< What the language's own rule can tell.

/// None for what is no size.
std::optional<qint64> bytesIn(const QVariant &value)
{
    if (!platform::isNumber(value))
        return {};
    const double bytes = value.toDouble();
    if (!(bytes >= 0) || std::isinf(bytes))
        return {};
    return bytes < largestSize ? static_cast<qint64>(bytes) : static_cast<qint64>(largestSize);
}

/// What rounds to a thousand of a unit is one of the next: "1.0 MB", not "1000.0 kB".
qint64 roundedUpToUnit(qint64 bytes)
{
    for (qint64 unit = 1000; unit <= bytes; unit *= 1000) {
        const qint64 next = unit * 1000;
        if (bytes < next && bytes >= next - unit / 20)
            return next;
        if (next >= qint64(largestSize) / 1000)
            break;
    }
    return bytes;
}
} // namespace

QWFileSizeFormatter::~QWFileSizeFormatter() = default;

QString QWFileSizeFormatter::stringForObjectValue(const QVariant &value) const
{
    const std::optional<qint64> bytes = bytesIn(value);
    if (!bytes)
        return {};
    if (*bytes == 1)
        return platform::localized("1 byte");
    return QLocale().formattedDataSize(roundedUpToUnit(*bytes), 1, QLocale::DataSizeSIFormat);
}
