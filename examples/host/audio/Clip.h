#pragma once

#include "SampleStore.h"
#include "WaveformSummary.h"

#include <memory>

namespace demo
{

/// One state of a sound with what its pictures and read-outs need, made once by the worker that made the sound.
struct Clip
{
    /// @p origin, which may be null, is the one that @p sound was made from: see SampleStore.
    explicit Clip(const Sound &sound, const Clip *origin = nullptr);

    SampleStore store;
    WaveformSummary summary;
    float peak = 0;      ///< Greatest absolute value.
    float effective = 0; ///< Root of the mean square over all channels.
};

/// Clips are never changed, so views, history and workers share them.
using ClipPointer = std::shared_ptr<const Clip>;

} // namespace demo
