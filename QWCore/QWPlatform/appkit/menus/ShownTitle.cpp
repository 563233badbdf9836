#include "ShownTitle.h"

namespace platform
{

namespace
{
constexpr qsizetype longestShownTitle = 120;

/// @p position moved so that no surrogate pair is cut.
qsizetype wholeCharacter(const QString &text, qsizetype position)
{
    return text.at(position).isLowSurrogate() ? position + 1 : position;
}

QString shortened(const QString &text)
{
    if (text.size() <= longestShownTitle)
        return text;
    const qsizetype left = wholeCharacter(text, longestShownTitle / 2);
    const qsizetype right = wholeCharacter(text, text.size() - longestShownTitle / 2);
    return text.left(left) + QChar(0x2026) + text.mid(right);
}
} // namespace

QString shownTitle(const QString &title)
{
    QString shown = shortened(title);
    for (QChar &character : shown) {
        if (character == '\t' || character == '\n' || character == '\r' || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = ' ';
    }
    return shown.replace('&', "&&");
}

} // namespace platform
