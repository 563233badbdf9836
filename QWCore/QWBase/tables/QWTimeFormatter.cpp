#include "QWTimeFormatter.h"

#include <QWPlatform/foundation/lists/PropertyListValues.h>

#include <QString>

#include <cmath>

namespace
{
constexpr double longestTime = 1e12; ///< Seconds; what is longer is a fault of whoever measured.

QString twoDigits(qlonglong number)
{
    return QString::number(number).rightJustified(2, '0');
}

QString minutesAndSeconds(qlonglong seconds)
{
    const qlonglong hours = seconds / 3600;
    const qlonglong minutes = seconds / 60 % 60;
    const QString front = hours > 0 ? QString::number(hours) + ':' + twoDigits(minutes) : QString::number(minutes);
    return front + ':' + twoDigits(seconds % 60);
}
} // namespace

class Q_DECL_HIDDEN QWTimeFormatter::Private
{
public:
    int m_timeFormat = MinutesAndSeconds;
};

QWTimeFormatter::QWTimeFormatter()
    : d(std::make_unique<Private>())
{
}

QWTimeFormatter::~QWTimeFormatter() = default;

int QWTimeFormatter::timeFormat() const
{
    return d->m_timeFormat;
}

void QWTimeFormatter::setTimeFormat(int format)
{
    d->m_timeFormat = format;
}

QString QWTimeFormatter::stringForObjectValue(const QVariant &value) const
{
    if (!platform::isNumber(value))
        return {};
    const double seconds = value.toDouble();
    const bool isLength = seconds >= 0 && seconds <= longestTime; // not a number is neither
    return isLength ? minutesAndSeconds(std::llround(seconds)) : QString();
}
