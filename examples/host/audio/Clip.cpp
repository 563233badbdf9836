#include "Clip.h"

#include <algorithm>
#include <cmath>

namespace demo
{

Clip::Clip(const Sound &sound, const Clip *origin)
    : store(sound, origin ? &origin->store : nullptr)
    , summary(sound)
{
    double squares = 0;
    for (const auto &channel : sound.channels) {
        for (const float sample : channel) {
            peak = std::max(peak, std::abs(sample));
            squares += static_cast<double>(sample) * sample;
        }
    }
    const auto count = static_cast<double>(sound.frames()) * sound.channelCount();
    effective = count > 0 ? static_cast<float>(std::sqrt(squares / count)) : 0;
}

} // namespace demo
