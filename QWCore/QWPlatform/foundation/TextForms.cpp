#include "TextForms.h"

#include "QWPlatform/foundation/lists/PropertyListScalars.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace platform::TextForms
{

namespace
{
constexpr double furthestPlace = 1 << 28;
constexpr int furthestOffset = 14 * 3600; ///< Seconds; no place on earth is further from UTC.

QString numberText(double value)
{
    return QString::fromStdString(PropertyListScalars::realText(value == 0 ? 0 : value)); // no "-0"
}

QString pairText(double first, double second)
{
    return u'{' + numberText(first) + u", " + numberText(second) + u'}';
}

/// The first @p Count numbers in @p text; all zero when it holds fewer.
template <size_t Count>
std::array<double, Count> numbersIn(const QString &text)
{
    static const QRegularExpression number(QStringLiteral(R"([-+]?(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][-+]?[0-9]+)?)"));
    std::array<double, Count> values{};
    auto found = number.globalMatch(text);
    for (double &value : values) {
        const std::string digits = found.hasNext() ? found.next().captured().toStdString() : std::string();
        const std::optional<double> read = PropertyListScalars::real(digits);
        if (!read)
            return {};
        value = *read;
    }
    return values;
}
} // namespace

QString stringFromRect(const QRectF &rect)
{
    return u'{' + stringFromPoint(rect.topLeft()) + u", " + stringFromSize(rect.size()) + u'}';
}

QString stringFromPoint(const QPointF &point)
{
    return pairText(point.x(), point.y());
}

QString stringFromSize(const QSizeF &size)
{
    return pairText(size.width(), size.height());
}

QRectF rectFromString(const QString &text)
{
    const auto [x, y, width, height] = numbersIn<4>(text);
    return {x, y, width, height};
}

QRect wholeRectFromString(const QString &text)
{
    const QRectF rect = rectFromString(text);
    const auto near = [](double number) { return std::clamp(number, -furthestPlace, furthestPlace); };
    return QRectF(near(rect.x()), near(rect.y()), near(rect.width()), near(rect.height())).toRect();
}

QPointF pointFromString(const QString &text)
{
    const auto [x, y] = numbersIn<2>(text);
    return {x, y};
}

QSizeF sizeFromString(const QString &text)
{
    const auto [width, height] = numbersIn<2>(text);
    return {width, height};
}

QString stringFromDate(const QDateTime &date)
{
    if (!date.isValid() || date.date().year() < 1 || date.date().year() > 9999)
        return {};
    const int offset = date.offsetFromUtc() / 60; // minutes
    const auto twoDigits = [](int number) { return QString::number(number).rightJustified(2, u'0'); };
    return date.date().toString(Qt::ISODate) + u' ' + date.time().toString(u"HH:mm:ss") + (offset < 0 ? u" -" : u" +") +
           twoDigits(std::abs(offset) / 60) + twoDigits(std::abs(offset) % 60);
}

std::optional<QDateTime> dateFromString(const QString &text)
{
    static const QRegularExpression form(QRegularExpression::anchoredPattern(
        QStringLiteral("([0-9]{4}-[0-9]{2}-[0-9]{2}) ([0-9]{2}:[0-9]{2}:[0-9]{2}) ([-+])([0-9]{2})([0-5][0-9])")));
    const auto parts = form.match(text);
    if (!parts.hasMatch())
        return std::nullopt;
    const QDate day = QDate::fromString(parts.captured(1), Qt::ISODate);
    const QTime time = QTime::fromString(parts.captured(2), QStringLiteral("HH:mm:ss"));
    const int offset = parts.captured(4).toInt() * 3600 + parts.captured(5).toInt() * 60;
    if (!day.isValid() || day.year() < 1 || !time.isValid() || offset > furthestOffset)
        return std::nullopt;
    return QDateTime(day, time, Qt::OffsetFromUTC, parts.captured(3) == u"-" ? -offset : offset);
}

} // namespace platform::TextForms
