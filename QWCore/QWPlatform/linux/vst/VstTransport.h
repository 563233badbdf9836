#pragma once

#include "VstInterface.h"

namespace platform
{

/// The time that an off-line host tells a plug-in: 120 beats a minute in 4/4, counted in the samples it processed.
class VstTransport
{
public:
    /// Plays from the top.
    void start(double sampleRate);

    void advance(int frames);
    void stop();

    /// Of what a plug-in wants to know (bits of vst::timeFlag), all that this host knows; valid until the next call.
    const vst::TimeInfo *timeInfo(std::intptr_t wanted);

private:
    double m_sampleRate = 48000;
    double m_position = 0;
    bool m_isPlaying = false;
    bool m_hasChanged = false; ///< Since the last block.
    vst::TimeInfo m_info{};
};

} // namespace platform
