#include "Lv2Sequence.h"

#include <cstring>
#include <lv2/atom/atom.h>
#include <lv2/midi/midi.h>

namespace platform
{

namespace
{
/// Bytes of the channel message with this status.
uint32_t messageSize(unsigned char status)
{
    const int kind = status & 0xF0;
    return kind == 0xC0 || kind == 0xD0 ? 2 : 3; // program change, channel pressure
}

constexpr std::size_t padded(std::size_t size)
{
    return (size + 7) & ~std::size_t(7);
}
} // namespace

Lv2Sequence::Lv2Sequence(Lv2UriMap &uris, int capacity)
    : m_words(padded(static_cast<std::size_t>(capacity) + sizeof(LV2_Atom_Sequence)) / sizeof(std::uint64_t))
    , m_sequenceType(uris.number(LV2_ATOM__Sequence))
    , m_chunkType(uris.number(LV2_ATOM__Chunk))
    , m_midiType(uris.number(LV2_MIDI__MidiEvent))
{
}

void Lv2Sequence::setEvents(std::span<const AudioPlugin::MidiEvent> events)
{
    const LV2_Atom_Sequence empty{{sizeof(LV2_Atom_Sequence_Body), m_sequenceType}, {0, 0}};
    std::memcpy(data(), &empty, sizeof empty);
    for (const AudioPlugin::MidiEvent &event : events)
        if (!_append(event))
            return;
}

void Lv2Sequence::setWritable()
{
    const auto capacity = static_cast<uint32_t>(m_words.size() * sizeof(std::uint64_t) - sizeof(LV2_Atom));
    const LV2_Atom_Sequence writable{{capacity, m_chunkType}, {0, 0}};
    std::memcpy(data(), &writable, sizeof writable);
}

bool Lv2Sequence::_append(const AudioPlugin::MidiEvent &event)
{
    LV2_Atom_Event head{};
    head.time.frames = event.frame;
    head.body = {messageSize(event.bytes[0]), m_midiType};
    LV2_Atom atom;
    std::memcpy(&atom, data(), sizeof atom);
    const std::size_t at = sizeof(LV2_Atom) + atom.size;
    const std::size_t size = padded(sizeof head + head.body.size);
    if (at + size > m_words.size() * sizeof(std::uint64_t))
        return false;
    auto *bytes = reinterpret_cast<unsigned char *>(data());
    std::memcpy(bytes + at, &head, sizeof head);
    std::memcpy(bytes + at + sizeof head, event.bytes, head.body.size);
    atom.size += static_cast<uint32_t>(size);
    std::memcpy(data(), &atom, sizeof atom);
    return true;
}

} // namespace platform
