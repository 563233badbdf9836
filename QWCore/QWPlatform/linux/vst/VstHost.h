#pragma once

#include "VstTransport.h"

namespace platform
{

/// What the host tells each plug-in that asks.
struct VstHost
{
    double sampleRate = 48000;
    int blockFrames = 512;
    VstTransport transport;

    /// The callback to hand to a plug-in's entry function. A plug-in is answered from the VstHost whose address its
    /// Effect::host holds; before that is set, from the values above, and told no time.
    static std::intptr_t callback(vst::Effect *effect, std::int32_t request, std::int32_t index, std::intptr_t value,
                                  void *pointer, float option);
};

} // namespace platform
