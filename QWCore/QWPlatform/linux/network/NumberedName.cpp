#include "NumberedName.h"

#include <QTextBoundaryFinder>

namespace platform
{

namespace
{
constexpr qsizetype longestExtension = 16; ///< With its dot; a longer one is part of a title with a dot in it.

qsizetype sizeInBytes(QStringView text)
{
    return text.toUtf8().size();
}

/// With its dot; "" for none.
QString extensionOf(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    const QString extension = dot > 0 ? name.mid(dot) : QString();
    return extension.size() > longestExtension || extension.contains(u' ') ? QString() : extension;
}

QString shortened(const QString &text, qsizetype mostBytes)
{
    if (sizeInBytes(text) <= mostBytes)
        return text;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (qsizetype next;
         (next = characters.toNextBoundary()) > 0 && sizeInBytes(QStringView(text).left(next)) <= mostBytes;)
        end = next;
    return text.left(end);
}
} // namespace

QString numberedName(const QString &name, qint64 number, qsizetype mostBytes)
{
    const QString extension = extensionOf(name);
    const QString end = (number > 1 ? ' ' + QString::number(number) : QString()) + extension;
    return shortened(name.chopped(extension.size()), mostBytes - sizeInBytes(end)) + end;
}

} // namespace platform
