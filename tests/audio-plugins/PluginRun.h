#pragma once

#include <QWPlatform/plugins/AudioPlugin.h>

#include <memory>
#include <vector>

/// The channels that @p plugin, started for blocks of @p frames, gives for one in which every input sample is @p level.
inline std::vector<std::vector<float>> runBlock(platform::AudioPlugin &plugin, int frames, float level,
                                                std::vector<platform::AudioPlugin::MidiEvent> events = {})
{
    std::vector<std::vector<float>> inputs(plugin.inputCount(), std::vector<float>(frames, level));
    std::vector<std::vector<float>> outputs(plugin.outputCount(), std::vector<float>(frames, 99.0F));
    std::vector<const float *> in;
    std::vector<float *> out;
    for (auto &channel : inputs)
        in.push_back(channel.data());
    for (auto &channel : outputs)
        out.push_back(channel.data());
    plugin.process(in, out, events);
    return outputs;
}
