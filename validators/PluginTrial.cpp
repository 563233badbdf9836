#include "PluginTrial.h"

#include "Watchdog.h"

#include <QWPlatform/plugins/AudioPlugin.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using platform::AudioPlugin;

namespace
{
constexpr double sampleRate = 48000;
constexpr int blockFrames = 512;
constexpr int silentBlocks = 4;
constexpr int noiseBlocks = 8;
constexpr AudioPlugin::MidiEvent noteOn{0, {0x90, 60, 100}};
constexpr AudioPlugin::MidiEvent noteOff{0, {0x80, 60, 0}};

class Channels
{
public:
    explicit Channels(int count)
        : m_samples(static_cast<std::size_t>(count), std::vector<float>(blockFrames))
    {
        for (std::vector<float> &channel : m_samples)
            m_pointers.push_back(channel.data());
    }

    std::span<float *const> writable() const { return m_pointers; }
    std::vector<const float *> readable() const { return {m_pointers.begin(), m_pointers.end()}; }

    void fillWithNoise(std::minstd_rand &random)
    {
        std::uniform_real_distribution<float> level(-0.5F, 0.5F);
        for (std::vector<float> &channel : m_samples)
            std::generate(channel.begin(), channel.end(), [&] { return level(random); });
    }

    bool areFinite() const
    {
        return std::all_of(m_samples.begin(), m_samples.end(), [](const std::vector<float> &channel) {
            return std::all_of(channel.begin(), channel.end(), [](float sample) { return std::isfinite(sample); });
        });
    }

private:
    std::vector<std::vector<float>> m_samples;
    std::vector<float *> m_pointers;
};

std::span<const AudioPlugin::MidiEvent> eventsOfBlock(const AudioPlugin &plugin, int noiseBlock)
{
    if (plugin.isInstrument() && noiseBlock == 0)
        return {&noteOn, 1};
    if (plugin.isInstrument() && noiseBlock == noiseBlocks / 2)
        return {&noteOff, 1};
    return {};
}

/// False at the first sample that is not finite.
bool runBlocks(AudioPlugin &plugin, Watchdog &watchdog)
{
    Channels inputs(plugin.inputCount());
    Channels outputs(plugin.outputCount());
    const std::vector<const float *> readable = inputs.readable();
    std::minstd_rand random;
    for (int block = -silentBlocks; block < noiseBlocks; ++block) {
        watchdog.progress("processing");
        if (block >= 0)
            inputs.fillWithNoise(random);
        plugin.process(readable, outputs.writable(), eventsOfBlock(plugin, block));
        if (!outputs.areFinite())
            return false;
    }
    return true;
}
} // namespace

QString tryPlugin(AudioPlugin &plugin, Watchdog &watchdog)
{
    watchdog.progress("starting to process");
    if (!plugin.start(sampleRate, blockFrames))
        return QStringLiteral("The plug-in refuses to start.");
    const bool isFinite = runBlocks(plugin, watchdog);
    watchdog.progress("stopping to process");
    plugin.stop();
    return isFinite ? QString() : QStringLiteral("The plug-in gives samples that are not finite.");
}
