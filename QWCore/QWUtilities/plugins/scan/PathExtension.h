#pragma once

#include <QString>

namespace qw
{

/// The extension of a file name, without its dot; "" for none. A leading dot begins a name, not an extension.
inline QStringView pathExtension(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.sliced(dot + 1) : QStringView();
}

/// The file name without extension and dot.
inline QString withoutPathExtension(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.first(dot) : name;
}

} // namespace qw
