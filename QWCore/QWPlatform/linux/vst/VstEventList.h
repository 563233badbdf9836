#pragma once

#include "QWPlatform/plugins/AudioPlugin.h"
#include "VstInterface.h"

#include <span>
#include <vector>

namespace platform
{

/// The channel messages of one block in the form that plug-ins take.
class VstEventList
{
public:
    /// The list, valid until the next call; plug-ins may read it until the block was processed.
    void *with(std::span<const AudioPlugin::MidiEvent> events);

private:
    std::vector<vst::MidiEvent> m_events;
    std::vector<std::intptr_t> m_list; ///< Head, then a pointer to each event.
};

} // namespace platform
