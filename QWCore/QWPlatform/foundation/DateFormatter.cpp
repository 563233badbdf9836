#include "DateFormatter.h"

#include <QDateTime>
#include <QLocale>
#include <QVariant>

namespace platform
{

DateFormatter::~DateFormatter() = default;

QString DateFormatter::stringForObjectValue(const QVariant &value) const
{
    if (value.typeId() != QMetaType::QDateTime)
        return {};
    return QLocale().toString(value.toDateTime().toLocalTime(), QLocale::ShortFormat);
}

} // namespace platform
