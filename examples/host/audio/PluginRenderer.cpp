#include "PluginRenderer.h"

#include "WorkProgress.h"

#include <algorithm>
#include <cmath>

namespace demo
{

using platform::AudioPlugin;

// A block of channels that lie one behind the other, with the pointers that plug-ins want.
class ChannelBlock
{
public:
    explicit ChannelBlock(int channels)
        : m_samples(static_cast<size_t>(channels) * PluginRenderer::blockFrames)
    {
        for (int channel = 0; channel < channels; ++channel)
            m_pointers.push_back(m_samples.data() + static_cast<size_t>(channel) * PluginRenderer::blockFrames);
    }

    void clear() { std::ranges::fill(m_samples, 0.0f); }
    float *channel(int index) { return m_pointers[static_cast<size_t>(index)]; }
    std::span<float *const> outputs() const { return m_pointers; }
    std::vector<const float *> inputs() const { return {m_pointers.begin(), m_pointers.end()}; }

private:
    std::vector<float> m_samples;
    std::vector<float *> m_pointers;
};

namespace
{
constexpr float inaudible = 1.0e-4f;    // -80 dB
constexpr double quietBeforeEnd = 0.25; // seconds
constexpr double fadeOutTime = 0.05;    // seconds
constexpr double longestLatency = 10;   // seconds; nothing that takes longer says so in earnest

// What lies behind the sound's end stays as it is.
void addChannel(const Sound &sound, int channel, qint64 first, float gain, float *to)
{
    const auto &samples = sound.channels[static_cast<size_t>(channel)];
    const qint64 end = std::min<qint64>(first + PluginRenderer::blockFrames, static_cast<qint64>(samples.size()));
    for (qint64 frame = first; frame < end; ++frame)
        to[frame - first] += samples[static_cast<size_t>(frame)] * gain;
}

float peakOf(const Sound &sound, qint64 frame)
{
    float peak = 0;
    for (const auto &channel : sound.channels)
        peak = std::max(peak, std::abs(channel[static_cast<size_t>(frame)]));
    return peak;
}

void fadeOutEnd(Sound &sound)
{
    const qint64 frames = std::min<qint64>(sound.frames(), static_cast<qint64>(fadeOutTime * sound.sampleRate));
    for (auto &channel : sound.channels) {
        for (qint64 i = 0; i < frames; ++i)
            channel[channel.size() - 1 - static_cast<size_t>(i)] *= static_cast<float>(i) / static_cast<float>(frames);
    }
}

// Keeps @p frames, from @p first on.
void cut(Sound &sound, qint64 first, qint64 frames)
{
    for (auto &channel : sound.channels) {
        const auto size = static_cast<qint64>(channel.size());
        channel.erase(channel.begin(), channel.begin() + std::min(first, size));
        channel.resize(static_cast<size_t>(std::min<qint64>(frames, std::max<qint64>(size - first, 0))));
    }
}

// Cuts what is silent after the first @p least frames.
void trimSilence(Sound &sound, qint64 least)
{
    qint64 end = sound.frames();
    while (end > least && peakOf(sound, end - 1) < inaudible)
        --end;
    for (auto &channel : sound.channels)
        channel.resize(static_cast<size_t>(end));
}
} // namespace

struct PluginRenderer::Pass
{
    Pass(std::unique_ptr<AudioPlugin> opened, const ChannelPlan &channelPlan, int firstOfPass, double sampleRate)
        : plugin(std::move(opened))
        , plan(channelPlan)
        , firstChannel(firstOfPass)
        , inputs(plugin->inputCount())
        , outputs(plugin->outputCount())
    {
        output.sampleRate = sampleRate;
        output.channels.resize(static_cast<size_t>(plan.kept));
    }
    ~Pass() { plugin->stop(); }
    Pass(const Pass &) = delete;
    Pass &operator=(const Pass &) = delete;

    void fill(const Sound &sound, qint64 first);
    void keep();

    // In frames, as told by now: plug-ins tell it, or change it, while they run.
    qint64 latency() const
    {
        const int told = plugin->latency();
        return told > 0 && told <= longestLatency * output.sampleRate ? told : 0;
    }

    std::unique_ptr<AudioPlugin> plugin;
    ChannelPlan plan;
    int firstChannel;
    ChannelBlock inputs;
    ChannelBlock outputs;
    qint64 quiet = 0; ///< Frames since the output was last heard.
    Sound output;     ///< Late by the latency until the pass is over.
    double from = 0;  ///< Share of the whole progress that this pass covers.
    double to = 1;
};

void PluginRenderer::Pass::fill(const Sound &sound, qint64 first)
{
    inputs.clear();
    const int inputCount = plugin->inputCount();
    const int channels = sound.channelCount();
    if (channels == 0 || inputCount == 0)
        return;
    if (plan.fold) {
        const float gain = 1.0f / static_cast<float>((channels + inputCount - 1) / inputCount);
        for (int channel = 0; channel < channels; ++channel)
            addChannel(sound, channel, first, gain, inputs.channel(channel % inputCount));
        return;
    }
    for (int input = 0; input < inputCount && firstChannel + input < channels; ++input)
        addChannel(sound, firstChannel + input, first, 1, inputs.channel(input));
    if (plan.spread)
        addChannel(sound, firstChannel, first, 1, inputs.channel(1));
}

void PluginRenderer::Pass::keep()
{
    quiet += blockFrames;
    for (int channel = 0; channel < plan.kept; ++channel) {
        const float *samples = outputs.channel(channel);
        for (int frame = 0; frame < blockFrames; ++frame) {
            const float sample = std::isfinite(samples[frame]) ? samples[frame] : 0.0f;
            output.channels[static_cast<size_t>(channel)].push_back(sample);
            if (std::abs(sample) >= inaudible)
                quiet = std::min<qint64>(quiet, blockFrames - frame);
        }
    }
}

PluginRenderer::PluginRenderer(Opener opener, WorkProgress &progress)
    : m_opener(std::move(opener))
    , m_progress(progress)
{
}

std::unique_ptr<AudioPlugin> PluginRenderer::_open(double sampleRate, QString *error)
{
    auto plugin = m_opener(error);
    if (!plugin)
        return nullptr;
    m_vendor = plugin->vendor();
    if (plugin->outputCount() < 1) {
        *error = QStringLiteral("It has no audio outputs, so there is nothing to hear from it.");
        return nullptr;
    }
    if (!plugin->start(sampleRate, blockFrames)) {
        *error = QStringLiteral("It does not work at %1 Hz.").arg(sampleRate);
        return nullptr;
    }
    return plugin;
}

// False when cancelled.
bool PluginRenderer::_runBlocks(Pass &pass, const Sound &input, const Phrase &phrase)
{
    const double rate = pass.output.sampleRate;
    const qint64 body = std::max(input.frames(), phrase.frames);
    const bool hasTail = pass.plugin->inputCount() > 0 || phrase.frames > 0;
    const qint64 end = body + (hasTail ? static_cast<qint64>(longestTail * rate) : 0);
    const auto inputs = pass.inputs.inputs();
    qint64 first = 0; // of the block
    qint64 heard = 0; // of the result, once the latency is taken out
    while (heard < end && (heard < body || static_cast<double>(pass.quiet) < quietBeforeEnd * rate)) {
        if (m_progress.isCancelled())
            return false;
        pass.fill(input, first);
        pass.outputs.clear();
        pass.plugin->process(inputs, pass.outputs.outputs(), phrase.eventsIn(first, blockFrames));
        pass.keep();
        first += blockFrames;
        heard = first - pass.latency();
        const double done =
            std::clamp(static_cast<double>(heard) / static_cast<double>(std::max<qint64>(body, 1)), 0.0, 1.0);
        m_progress.setFraction(pass.from + (pass.to - pass.from) * done);
    }
    cut(pass.output, pass.latency(), end);
    if (hasTail && heard >= end)
        fadeOutEnd(pass.output);
    return true;
}

bool PluginRenderer::_run(Pass &pass, const Sound &input, const Phrase &phrase, Sound &result)
{
    if (!_runBlocks(pass, input, phrase))
        return false;
    const auto length = static_cast<size_t>(std::max(result.frames(), pass.output.frames()));
    for (auto &channel : pass.output.channels)
        result.channels.push_back(std::move(channel));
    for (auto &channel : result.channels)
        channel.resize(length);
    return true;
}

std::optional<Sound> PluginRenderer::apply(const Sound &sound, QString *error)
{
    Sound result;
    result.sampleRate = sound.sampleRate;
    int passes = 1;
    for (int i = 0; i < passes; ++i) {
        auto plugin = _open(sound.sampleRate, error);
        if (!plugin)
            return std::nullopt;
        const int inputs = plugin->inputCount();
        const ChannelPlan plan = ChannelPlan::make(sound.channelCount(), inputs, plugin->outputCount());
        passes = plan.passes;
        Pass pass(std::move(plugin), plan, i * inputs, sound.sampleRate);
        pass.from = static_cast<double>(i) / passes;
        pass.to = static_cast<double>(i + 1) / passes;
        if (!_run(pass, sound, {}, result))
            return std::nullopt;
    }
    trimSilence(result, sound.frames());
    return result;
}

std::optional<Sound> PluginRenderer::play(double sampleRate, QString *error)
{
    auto plugin = _open(sampleRate, error);
    if (!plugin)
        return std::nullopt;
    Sound result;
    result.sampleRate = sampleRate;
    const Phrase phrase = Phrase::forTrying(sampleRate);
    const int outputs = plugin->outputCount();
    Pass pass(std::move(plugin), ChannelPlan::make(2, 0, outputs), 0, sampleRate);
    if (!_run(pass, {}, phrase, result))
        return std::nullopt;
    trimSilence(result, phrase.frames);
    return result;
}

} // namespace demo
