#include "PropertyListScalars.h"

#include <QCalendar>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace platform::PropertyListScalars
{

namespace
{
constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// @p text is a whole number of type @p T and nothing else.
template <class T, class... Format>
bool readWhole(std::string_view text, T &value, Format... format)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, format...);
    return error == std::errc() && end == text.data() + text.size();
}

/// The digits at @p at, at most two or four of them; -1 for anything else.
int digits(std::string_view text, size_t at, size_t count)
{
    int value = 0;
    for (const char c : text.substr(at, count)) {
        if (c < '0' || c > '9')
            return -1;
        value = value * 10 + (c - '0');
    }
    return value;
}

std::optional<QVariant> signedInteger(quint64 magnitude, bool negative)
{
    constexpr auto largest = static_cast<quint64>(std::numeric_limits<qint64>::max());
    if (!negative)
        return magnitude <= largest ? QVariant(static_cast<qlonglong>(magnitude))
                                    : QVariant(static_cast<qulonglong>(magnitude));
    if (magnitude > largest + 1)
        return std::nullopt;
    return QVariant(static_cast<qlonglong>(0 - magnitude));
}
} // namespace

std::optional<QVariant> integer(std::string_view text)
{
    text = trimmed(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal)
        text.remove_prefix(2);
    quint64 magnitude = 0;
    if (!readWhole(text, magnitude, hexadecimal ? 16 : 10))
        return std::nullopt;
    return signedInteger(magnitude, negative);
}

std::optional<double> real(std::string_view text)
{
    text = trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    double value = 0;
    if (text.find('(') != std::string_view::npos || !readWhole(text, value)) // "nan(…)" is C's
        return std::nullopt;
    return value;
}

std::optional<QDateTime> date(std::string_view text)
{
    text = trimmed(text);
    constexpr std::string_view form = "0000-00-00T00:00:00Z";
    if (text.size() != form.size())
        return std::nullopt;
    for (size_t i = 0; i < form.size(); ++i)
        if (form[i] != '0' && form[i] != text[i])
            return std::nullopt;
    const QDate day(digits(text, 0, 4), digits(text, 5, 2), digits(text, 8, 2));
    const QTime time(digits(text, 11, 2), digits(text, 14, 2), digits(text, 17, 2));
    if (!day.isValid() || day.year() < 1 || !time.isValid())
        return std::nullopt;
    return QDateTime(day, time, Qt::UTC);
}

std::optional<QByteArray> data(std::string_view text)
{
    QByteArray packed;
    packed.reserve(static_cast<qsizetype>(text.size()));
    for (const char c : text)
        if (blanks.find(c) == std::string_view::npos)
            packed.append(c);
    auto decoded = QByteArray::fromBase64Encoding(packed, QByteArray::AbortOnBase64DecodingErrors);
    const bool padded = packed.size() % 4 == 0 && !packed.endsWith("===");
    if (!padded || decoded.decodingStatus != QByteArray::Base64DecodingStatus::Ok)
        return std::nullopt;
    return std::move(decoded.decoded);
}

bool isWritable(const QString &text)
{
    return text.isValidUtf16() && !text.contains(QChar::Null);
}

std::string realText(double value)
{
    if (std::isnan(value))
        return "nan";
    const double size = std::fabs(value);
    const bool plain = size == 0 || (size >= 1e-5 && size < 1e15);
    std::array<char, 64> buffer;
    char *const last = buffer.data() + buffer.size();
    const auto result = plain ? std::to_chars(buffer.data(), last, value, std::chars_format::fixed)
                              : std::to_chars(buffer.data(), last, value);
    return {buffer.data(), result.ptr};
}

QByteArray dateText(const QDateTime &date)
{
    const QDateTime utc = date.toUTC();
    if (!utc.isValid() || utc.date().year() < 1 || utc.date().year() > 9999)
        return {};
    const auto [year, month, day] = QCalendar().partsFromDate(utc.date());
    const QTime time = utc.time();
    std::array<char, 24> text;
    const int size = std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02dZ", year, month, day,
                                   time.hour(), time.minute(), time.second());
    return {text.data(), size};
}

} // namespace platform::PropertyListScalars
