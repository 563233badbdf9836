#include "VstTransport.h"

#include <cmath>

namespace platform
{

namespace
{
constexpr double tempo = 120;
constexpr int beatsInABar = 4; // quarter notes
constexpr std::int32_t known =
    vst::timeFlag::beatsValid | vst::timeFlag::tempoValid | vst::timeFlag::barValid | vst::timeFlag::signatureValid;
} // namespace

void VstTransport::start(double sampleRate)
{
    m_sampleRate = sampleRate;
    m_position = 0;
    m_isPlaying = true;
    m_hasChanged = true;
}

void VstTransport::advance(int frames)
{
    m_position += frames;
    m_hasChanged = false;
}

void VstTransport::stop()
{
    m_isPlaying = false;
    m_hasChanged = true;
}

const vst::TimeInfo *VstTransport::timeInfo(std::intptr_t wanted)
{
    m_info.position = m_position;
    m_info.sampleRate = m_sampleRate;
    m_info.tempo = tempo;
    m_info.beats = m_position / m_sampleRate * tempo / 60;
    m_info.barStart = std::floor(m_info.beats / beatsInABar) * beatsInABar;
    m_info.numerator = beatsInABar;
    m_info.denominator = 4;
    m_info.flags = static_cast<std::int32_t>(wanted) & known;
    m_info.flags |= m_isPlaying ? vst::timeFlag::transportPlaying : 0;
    m_info.flags |= m_hasChanged ? vst::timeFlag::transportChanged : 0;
    return &m_info;
}

} // namespace platform
