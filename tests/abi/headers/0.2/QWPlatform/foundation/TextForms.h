#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QDateTime>
#include <QRect>
#include <QRectF>
#include <QString>

#include <optional>

namespace platform
{

/// Values as text, in the forms of user defaults and server answers. Knows no locale. Any thread.
namespace TextForms
{

/// "{{x, y}, {w, h}}", numbers as short as they can be: "{{0, 12.5}, {392, 259}}".
QWPLATFORM_EXPORT QString stringFromRect(const QRectF &rect);

/// "{x, y}", likewise.
QWPLATFORM_EXPORT QString stringFromPoint(const QPointF &point);

/// "{w, h}", likewise.
QWPLATFORM_EXPORT QString stringFromSize(const QSizeF &size);

/// The first four numbers in @p text, whatever stands between them; the zero value when there are too few.
QWPLATFORM_EXPORT QRectF rectFromString(const QString &text);

/// The same in whole numbers, those that no screen reaches cut to what a sum of two can hold.
QWPLATFORM_EXPORT QRect wholeRectFromString(const QString &text);

/// The first two numbers in @p text, likewise.
QWPLATFORM_EXPORT QPointF pointFromString(const QString &text);

/// The first two numbers in @p text, likewise.
QWPLATFORM_EXPORT QSizeF sizeFromString(const QString &text);

/// "2009-03-05 16:07:00 -0500", in the date's own offset from UTC; "" for an invalid date.
QWPLATFORM_EXPORT QString stringFromDate(const QDateTime &date);

/// The date of exactly that form, with its offset; none for any other text.
QWPLATFORM_EXPORT std::optional<QDateTime> dateFromString(const QString &text);

} // namespace TextForms

} // namespace platform
