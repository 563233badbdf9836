#pragma once

#include <QVariant>

namespace qw
{

/// The whole number in @p value, which may be of any type a property list holds: fractions are cut off, texts read,
/// truth is 1 or 0, and what is no number is 0.
qlonglong integerOf(const QVariant &value);

} // namespace qw
