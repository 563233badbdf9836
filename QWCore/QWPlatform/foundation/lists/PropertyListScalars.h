#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVariant>

#include <optional>
#include <string>
#include <string_view>

namespace platform
{

/// Deepest nesting of arrays and dictionaries that is read or written.
constexpr int maximumPropertyListDepth = 512;

/// Texts of the scalars in property lists. Reading is strict and knows no locale; blanks around are allowed.
namespace PropertyListScalars
{

/// Decimal or "0x" hexadecimal with an optional sign, -2^63 to 2^64-1: qlonglong, above its range qulonglong.
std::optional<QVariant> integer(std::string_view text);

/// Decimal or with exponent; "nan", "inf" and "infinity" with an optional sign.
std::optional<double> real(std::string_view text);

/// "2009-03-05T16:07:00Z" and no other form.
std::optional<QDateTime> date(std::string_view text);

/// Base64 with padding; blanks anywhere.
std::optional<QByteArray> data(std::string_view text);

/// True for text that can be written: without null characters and halves of surrogate pairs.
bool isWritable(const QString &text);

/// The shortest text that reads back the same: "100", "12.5"; with an exponent only where very large or small.
std::string realText(double value);

/// UTC, cut to whole seconds; "" for a date that the form cannot hold.
QByteArray dateText(const QDateTime &date);

} // namespace PropertyListScalars

} // namespace platform
