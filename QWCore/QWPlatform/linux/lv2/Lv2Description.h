#pragma once

#include <QString>

namespace platform
{

/// What the component registry wants to know of one LV2 plug-in.
struct Lv2Description
{
    QString uri;
    QString name;     ///< Never empty.
    QString author;   ///< May be empty.
    quint32 type = 0; ///< Component type.

    bool operator==(const Lv2Description &) const = default;
};

} // namespace platform
