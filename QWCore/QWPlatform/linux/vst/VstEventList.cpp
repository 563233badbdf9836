#include "VstEventList.h"

#include <algorithm>
#include <cstring>

namespace platform
{

void *VstEventList::with(std::span<const AudioPlugin::MidiEvent> events)
{
    constexpr std::size_t headWords = sizeof(vst::EventListHead) / sizeof(std::intptr_t);
    m_events.resize(events.size());
    m_list.assign(headWords + std::max<std::size_t>(events.size(), 2), 0); // the published list holds at least two
    const vst::EventListHead head{static_cast<std::int32_t>(events.size()), 0};
    std::memcpy(m_list.data(), &head, sizeof head);
    for (std::size_t i = 0; i < events.size(); ++i) {
        m_events[i].frame = events[i].frame;
        std::copy(std::begin(events[i].bytes), std::end(events[i].bytes), m_events[i].bytes);
        m_list[headWords + i] = reinterpret_cast<std::intptr_t>(&m_events[i]);
    }
    return m_list.data();
}

} // namespace platform
