#pragma once

#include <QWPlatform/plugins/AudioComponent.h>

#include <QStringList>

/// The codes of @p unit as the AU validator takes them: signed decimal numbers.
inline QStringList argumentsFor(const platform::AudioComponent &unit)
{
    QStringList arguments;
    for (const quint32 code : {unit.type, unit.subtype, unit.manufacturer})
        arguments += QString::number(static_cast<qint32>(code));
    return arguments;
}
