#pragma once

#include "Sound.h"
#include "WaveformSummary.h"

#include <memory>

namespace demo
{

/// A sound with what its pictures and read-outs need, made once by the worker that made the sound.
struct Clip
{
    explicit Clip(Sound samples);

    Sound sound;
    WaveformSummary summary;
    float peak = 0;      ///< Greatest absolute value.
    float effective = 0; ///< Root of the mean square over all channels.
};

/// Clips are never changed, so views, history and workers share them.
using ClipPointer = std::shared_ptr<const Clip>;

} // namespace demo
