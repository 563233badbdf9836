#pragma once

#include "LilvPointers.h"

#include <limits>
#include <optional>
#include <vector>

namespace platform
{

/// Of one plug-in: far beyond any real one, and still cheap to look through.
constexpr uint32_t mostLv2Ports = 65536;

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
    bool timesSampleRate = false; ///< Value and bounds are fractions of the sample rate.
    bool tellsLatency = false;    ///< A control that the plug-in writes its latency to while it runs.
    float value = 0;              ///< Default of a control; the next two are its bounds.
    float minimum = -std::numeric_limits<float>::infinity();
    float maximum = std::numeric_limits<float>::infinity();
    int minimumSize = 0; ///< Of a sequence, in bytes.

    /// The default at @p sampleRate. Makers who give it in Hz beside bounds in fractions mean it so: where the product
    /// lies outside of the bounds and the plain value does not, that is taken.
    float valueAt(float sampleRate) const;
};

/// The ports of @p plugin by index; none, and the reason in @p error, when one cannot be served.
std::optional<std::vector<Lv2Port>> readLv2Ports(LilvWorld *world, const LilvPlugin *plugin, QString *error);

} // namespace platform
