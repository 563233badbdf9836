#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QVariant>

namespace platform
{

// Numbers out of property lists, in which others may have stored them as any type that a list holds. Any thread.

/// Whether @p value is of a type of numbers, truth among them.
QWPLATFORM_SHARED_EXPORT bool isNumber(const QVariant &value);

/// The whole number in @p value: fractions are cut off, texts read, truth is 1 or 0. What is no number or lies beyond
/// the range is 0.
QWPLATFORM_SHARED_EXPORT qlonglong integerOf(const QVariant &value);

/// Whether @p value is a number other than 0, or a text of one; of other texts those that begin with "y" or "t" in
/// either case, since text lists know no truth values and write "YES".
QWPLATFORM_SHARED_EXPORT bool truthOf(const QVariant &value);

} // namespace platform
