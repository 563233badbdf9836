#include "XmlPropertyListText.h"

#include "Utf8.h"

#include <algorithm>

namespace platform::XmlPropertyListText
{

namespace
{
constexpr int digits = 4;

/// The character whose code stands at the beginning of @p text; a null character for none that is held back.
QChar characterOf(QStringView text)
{
    bool isNumber = text.size() >= digits;
    const auto code = isNumber ? text.first(digits).toUShort(&isNumber, 16) : ushort(0);
    return isNumber && isHeldBack(code) ? QChar(code) : QChar();
}
} // namespace

QString encoded(const QString &text)
{
    const auto held = [](QChar c) { return isHeldBack(c.unicode()); };
    if (std::none_of(text.begin(), text.end(), held))
        return text;
    QString result;
    for (const QChar c : text) {
        if (held(c))
            result += QChar(mark) + QString::number(c.unicode(), 16).rightJustified(digits, u'0');
        else
            result += c;
    }
    return result;
}

/// Piece by piece: taking the codes out of the whole text one by one would move its rest for each.
QString decoded(QByteArrayView utf8)
{
    const QString text = textOfUtf8(utf8);
    qsizetype at = text.indexOf(mark);
    if (at < 0)
        return text;
    QString result;
    qsizetype copied = 0;
    for (; at >= 0; at = text.indexOf(mark, at + 1)) {
        const QChar character = characterOf(QStringView(text).sliced(at + 1));
        if (character.isNull())
            continue;
        result.append(QStringView(text).sliced(copied, at - copied)).append(character);
        copied = at + 1 + digits;
    }
    return result.append(QStringView(text).sliced(copied));
}

} // namespace platform::XmlPropertyListText
