#pragma once

#include "LilvPointers.h"

#include <optional>
#include <vector>

namespace platform
{

/// One port of a plug-in, as far as a host without controls needs to know.
struct Lv2Port
{
    enum class Kind
    {
        Audio,
        Control,
        Voltage,
        Sequence,
        Unconnected
    };

    Kind kind = Kind::Unconnected;
    bool isInput = false;
    bool takesMidi = false;
    bool timesSampleRate = false; ///< The value is a fraction of the sample rate.
    float value = 0;              ///< Default of a control.
    int minimumSize = 0;          ///< Of a sequence, in bytes.
};

/// The ports of @p plugin by index; none, and the reason in @p error, when one cannot be served.
std::optional<std::vector<Lv2Port>> readLv2Ports(LilvWorld *world, const LilvPlugin *plugin, QString *error);

} // namespace platform
