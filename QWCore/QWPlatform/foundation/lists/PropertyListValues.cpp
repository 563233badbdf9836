#include "PropertyListValues.h"

#include <cmath>

namespace platform
{

namespace
{
qlonglong truncated(double value)
{
    constexpr double limit = 9223372036854775808.0; // the first number beyond the range; none is below "not a number"
    return std::fabs(value) < limit ? static_cast<qlonglong>(value) : 0;
}

qlonglong integerOfText(const QString &text)
{
    bool isWhole = false;
    const qlonglong number = text.toLongLong(&isWhole);
    return isWhole ? number : truncated(text.toDouble());
}

bool isNotZero(double value)
{
    return std::fabs(value) > 0; // false for "not a number"
}

bool meansTrue(const QString &text)
{
    return text.startsWith(u'y', Qt::CaseInsensitive) || text.startsWith(u't', Qt::CaseInsensitive) ||
           isNotZero(text.toDouble());
}
} // namespace

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

qlonglong integerOf(const QVariant &value)
{
    if (value.typeId() == QMetaType::QString)
        return integerOfText(value.toString());
    if (!isNumber(value))
        return 0;
    const bool mayLieBeyond = value.typeId() == QMetaType::ULongLong || value.typeId() == QMetaType::Float ||
                              value.typeId() == QMetaType::Double;
    return mayLieBeyond ? truncated(value.toDouble()) : value.toLongLong();
}

bool truthOf(const QVariant &value)
{
    return value.typeId() == QMetaType::QString ? meansTrue(value.toString())
                                                : isNumber(value) && isNotZero(value.toDouble());
}

} // namespace platform
