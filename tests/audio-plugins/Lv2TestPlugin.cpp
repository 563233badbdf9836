// An LV2 plug-in that halves its input, or does what BEHAVIOUR says. Ports: 0 input (audio, of a generator a control),
// 1 audio output, 2 events, 3 latency, 4 gain.
#include "Misbehaviour.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <lv2/atom/atom.h>
#include <lv2/atom/util.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

namespace
{
constexpr float latencyInSamples = 32;

struct Plugin
{
    void *ports[5] = {};
    LV2_URID midiEvent = 0;
    uint32_t blockLength = 0; ///< As the host tells it; 0 unless all blocks have it.
    bool noteIsOn = false;
};

const LV2_Feature *find(const LV2_Feature *const *features, const char *uri)
{
    for (; *features; ++features)
        if (std::strcmp((*features)->URI, uri) == 0)
            return *features;
    return nullptr;
}

LV2_URID numberOf(const LV2_Feature *const *features, const char *uri)
{
    const LV2_Feature *feature = find(features, LV2_URID__map);
    const auto *map = feature ? static_cast<const LV2_URID_Map *>(feature->data) : nullptr;
    return map ? map->map(map->handle, uri) : 0;
}

/// The whole number that the host gives for the option @p uri; 0 for none.
uint32_t optionOf(const LV2_Feature *const *features, const char *uri)
{
    const LV2_Feature *feature = find(features, LV2_OPTIONS__options);
    const LV2_URID key = numberOf(features, uri);
    for (auto *option = feature ? static_cast<const LV2_Options_Option *>(feature->data) : nullptr;
         option && option->key; ++option)
        if (option->key == key && option->type == numberOf(features, LV2_ATOM__Int))
            return static_cast<uint32_t>(*static_cast<const int32_t *>(option->value));
    return 0;
}

uint32_t fixedBlockLength(const LV2_Feature *const *features)
{
    const uint32_t length = optionOf(features, LV2_BUF_SIZE__nominalBlockLength);
    const bool isFixed = find(features, LV2_BUF_SIZE__fixedBlockLength) &&
                         length == optionOf(features, LV2_BUF_SIZE__minBlockLength) &&
                         length == optionOf(features, LV2_BUF_SIZE__maxBlockLength);
    return isFixed && find(features, LV2_BUF_SIZE__powerOf2BlockLength) && std::has_single_bit(length) ? length : 0;
}

LV2_Handle instantiate(const LV2_Descriptor *, double, const char *, const LV2_Feature *const *features)
{
    misbehaveAtOpen();
    if (behaviour == Behaviour::Refusing)
        return nullptr;
    const uint32_t blockLength = fixedBlockLength(features);
    if (behaviour == Behaviour::FixedBlocks && blockLength == 0)
        return nullptr;
    auto *plugin = new Plugin;
    plugin->blockLength = blockLength;
    plugin->midiEvent = numberOf(features, LV2_MIDI__MidiEvent);
    return plugin;
}

void connectPort(LV2_Handle instance, uint32_t port, void *data)
{
    static_cast<Plugin *>(instance)->ports[port] = data;
}

void takeEvents(Plugin &plugin)
{
    const auto *sequence = static_cast<const LV2_Atom_Sequence *>(plugin.ports[2]);
    LV2_ATOM_SEQUENCE_FOREACH(sequence, event)
    {
        const auto *bytes = static_cast<const unsigned char *>(LV2_ATOM_BODY_CONST(&event->body));
        if (event->body.type == plugin.midiEvent)
            plugin.noteIsOn = (bytes[0] & 0xF0) == 0x90;
    }
}

void run(LV2_Handle instance, uint32_t frames)
{
    auto &plugin = *static_cast<Plugin *>(instance);
    takeEvents(plugin);
    const auto *input = static_cast<const float *>(plugin.ports[0]);
    auto *output = static_cast<float *>(plugin.ports[1]);
    *static_cast<float *>(plugin.ports[3]) = latencyInSamples;
    const float gain = *static_cast<const float *>(plugin.ports[4]);
    for (uint32_t i = 0; i < frames; ++i) {
        output[i] = behaviour == Behaviour::Instrument ? (plugin.noteIsOn ? gain : 0)
                                                       : gain * input[behaviour == Behaviour::Generator ? 0 : i];
        if (behaviour == Behaviour::NotFinite || (behaviour == Behaviour::FixedBlocks && frames != plugin.blockLength))
            output[i] = INFINITY;
    }
}

void cleanup(LV2_Handle instance)
{
    delete static_cast<Plugin *>(instance);
}

constexpr LV2_Descriptor descriptor{
    "http://quorwell.example/test/" BEHAVIOUR_NAME, instantiate, connectPort, nullptr, run, nullptr, cleanup, nullptr};
} // namespace

extern "C" [[gnu::visibility("default")]] const LV2_Descriptor *lv2_descriptor(uint32_t index)
{
    return index == 0 ? &descriptor : nullptr;
}
