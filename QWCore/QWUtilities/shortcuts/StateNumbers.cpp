#include "StateNumbers.h"

#include <cmath>

namespace qw
{

namespace
{
constexpr double limit = 9.2e18;

qlonglong cut(double value)
{
    return std::isfinite(value) && std::fabs(value) < limit ? static_cast<qlonglong>(value) : 0;
}
} // namespace

qlonglong integerOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Double:
        return cut(value.toDouble());
    case QMetaType::QString: {
        bool isWhole = false;
        const qlonglong number = value.toString().toLongLong(&isWhole);
        return isWhole ? number : cut(value.toDouble());
    }
    default:
        return value.toLongLong();
    }
}

} // namespace qw
