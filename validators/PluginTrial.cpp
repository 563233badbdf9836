#include "PluginTrial.h"

#include "Watchdog.h"

#include <QWPlatform/plugins/AudioPlugin.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <thread>
#include <vector>

using platform::AudioPlugin;

namespace
{
constexpr double sampleRate = 48000;
constexpr int blockFrames = 512;
constexpr int silentBlocks = 4;
constexpr int noiseBlocks = 8;
constexpr auto pauseAfterNoise = std::chrono::milliseconds(20);
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

} // namespace

PluginTrial::PluginTrial(Watchdog &watchdog, const TrialPace &pace)
    : m_watchdog(watchdog)
    , m_pace(pace)
{
}

TrialOutcome PluginTrial::run(const Open &open, const StateOf &stateOf) const
{
    QString error;
    m_watchdog.progress(TrialStep::Opening);
    auto plugin = open(&error);
    if (!plugin)
        return {.error = error.isEmpty() ? QStringLiteral("The plug-in cannot be opened.") : error};
    const QVariantMap state = stateOf(*plugin);
    TrialOutcome outcome = _try(*plugin);
    m_watchdog.progress(TrialStep::Closing);
    plugin.reset();
    outcome.state = state;
    return outcome;
}

TrialOutcome PluginTrial::_try(AudioPlugin &plugin) const
{
    m_watchdog.progress(TrialStep::Starting);
    if (!plugin.start(sampleRate, blockFrames))
        return {.error = QStringLiteral("The plug-in refuses to start.")};
    _awaitThreads();
    const bool isFinite = _isFiniteInTheEnd(plugin);
    _awaitThreads();
    m_watchdog.progress(TrialStep::Stopping);
    plugin.stop();
    if (isFinite)
        return {};
    return {.error = QStringLiteral("The plug-in gives samples that are not finite."), .isFinal = false};
}

/// Some give anything until their threads have computed what they play.
bool PluginTrial::_isFiniteInTheEnd(AudioPlugin &plugin) const
{
    const auto deadline = std::chrono::steady_clock::now() + m_pace.longestNoise;
    while (!_isFinite(plugin)) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(pauseAfterNoise);
    }
    return true;
}

/// False at the first sample that is not finite.
bool PluginTrial::_isFinite(AudioPlugin &plugin) const
{
    Channels inputs(plugin.inputCount());
    Channels outputs(plugin.outputCount());
    const std::vector<const float *> readable = inputs.readable();
    std::minstd_rand random;
    for (int block = -silentBlocks; block < noiseBlocks; ++block) {
        if (block == 0)
            _awaitThreads(); // which compute, from the first block on, what the first note needs
        m_watchdog.progress(TrialStep::Processing);
        if (block >= 0)
            inputs.fillWithNoise(random);
        plugin.process(readable, outputs.writable(), eventsOfBlock(plugin, block));
        if (!outputs.areFinite())
            return false;
    }
    return true;
}

void PluginTrial::_awaitThreads() const
{
    m_threads.awaitRest(m_pace.calm, m_pace.longestRest, [this] { m_watchdog.progress(TrialStep::Settling); });
}
