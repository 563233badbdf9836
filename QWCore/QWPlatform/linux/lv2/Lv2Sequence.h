#pragma once

#include "Lv2UriMap.h"
#include "QWPlatform/plugins/AudioPlugin.h"

#include <cstdint>
#include <span>
#include <vector>

namespace platform
{

/// The buffer of a port that takes or gives events.
class Lv2Sequence
{
public:
    /// @p capacity is in bytes.
    Lv2Sequence(Lv2UriMap &uris, int capacity);

    /// Holds @p events, as many as fit, for an input.
    void setEvents(std::span<const AudioPlugin::MidiEvent> events);

    /// Empty, telling its capacity, for an output.
    void setWritable();

    void *data() { return m_words.data(); }

private:
    bool _append(const AudioPlugin::MidiEvent &event);

    std::vector<std::uint64_t> m_words; ///< Events are aligned to 64 bits.
    LV2_URID m_sequenceType;
    LV2_URID m_chunkType;
    LV2_URID m_midiType;
};

} // namespace platform
