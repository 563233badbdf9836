#include "SoundEdits.h"

#include <QLatin1String>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace demo
{

namespace
{
constexpr float normalPeak = 0.8912509f; // -1 dB
constexpr float silence = 0.001f;        // -60 dB

using Samples = std::vector<float>;

std::span<float> partOf(Samples &samples, FrameRange part)
{
    return std::span(samples).subspan(static_cast<size_t>(part.first), static_cast<size_t>(part.count()));
}

/// Each channel's part for itself.
template <class Change>
void forEachPart(Sound &sound, FrameRange part, Change change)
{
    for (Samples &samples : sound.channels)
        change(partOf(samples, part));
}

/// @p factorAt tells the factor for a place between 0 and 1 in the part.
template <class FactorAt>
void shape(Sound &sound, FrameRange part, FactorAt factorAt)
{
    const auto last = static_cast<float>(std::max(part.count() - 1, qint64(1)));
    forEachPart(sound, part, [&](std::span<float> samples) {
        for (size_t i = 0; i < samples.size(); ++i)
            samples[i] *= factorAt(static_cast<float>(i) / last);
    });
}

void reverse(Sound &sound, FrameRange part)
{
    forEachPart(sound, part, [](std::span<float> samples) { std::ranges::reverse(samples); });
}

void invert(Sound &sound, FrameRange part)
{
    shape(sound, part, [](float) { return -1.0f; });
}

void mute(Sound &sound, FrameRange part)
{
    shape(sound, part, [](float) { return 0.0f; });
}

// Equal power: the middle is 3 dB below full, so that two fades over each other stay as loud.
void fadeIn(Sound &sound, FrameRange part)
{
    shape(sound, part, [](float place) { return std::sqrt(place); });
}

void fadeOut(Sound &sound, FrameRange part)
{
    shape(sound, part, [](float place) { return std::sqrt(1 - place); });
}

void normalise(Sound &sound, FrameRange part)
{
    float peak = 0;
    forEachPart(sound, part, [&](std::span<float> samples) {
        for (const float sample : samples)
            peak = std::max(peak, std::abs(sample));
    });
    if (peak > 0)
        shape(sound, part, [=](float) { return normalPeak / peak; });
}

void removeOffset(Sound &sound, FrameRange part)
{
    forEachPart(sound, part, [](std::span<float> samples) {
        double sum = 0;
        for (const float sample : samples)
            sum += sample;
        const auto offset = static_cast<float>(sum / static_cast<double>(std::max<size_t>(samples.size(), 1)));
        for (float &sample : samples)
            sample -= offset;
    });
}

void swapChannels(Sound &sound, FrameRange part)
{
    if (sound.channelCount() > 1)
        std::ranges::swap_ranges(partOf(sound.channels[0], part), partOf(sound.channels[1], part));
}

void mixToMono(Sound &sound, FrameRange part)
{
    for (auto frame = static_cast<size_t>(part.first); frame < static_cast<size_t>(part.last); ++frame) {
        float sum = 0;
        for (const Samples &samples : sound.channels)
            sum += samples[frame];
        for (Samples &samples : sound.channels)
            samples[frame] = sum / static_cast<float>(sound.channelCount());
    }
}

void remove(Sound &sound, FrameRange part)
{
    for (Samples &samples : sound.channels)
        samples.erase(samples.begin() + part.first, samples.begin() + part.last);
}

void keep(Sound &sound, FrameRange part)
{
    for (Samples &samples : sound.channels)
        samples = Samples(samples.begin() + part.first, samples.begin() + part.last);
}

bool isSilent(const Sound &sound, qint64 frame)
{
    return std::ranges::all_of(sound.channels, [=](const Samples &samples) {
        return std::abs(samples[static_cast<size_t>(frame)]) < silence;
    });
}

/// At both ends of the sound, whatever part of it is meant.
void trimSilence(Sound &sound, FrameRange)
{
    FrameRange loud{0, sound.frames()};
    while (loud.first < loud.last && isSilent(sound, loud.first))
        ++loud.first;
    while (loud.last > loud.first && isSilent(sound, loud.last - 1))
        --loud.last;
    keep(sound, loud);
}

constexpr std::array edits{
    SoundEdit{"reverse", "Reverse", reverse},
    SoundEdit{"invert", "Invert", invert},
    SoundEdit{"normalise", "Normalise", normalise},
    SoundEdit{"silence", "Silence", mute},
    SoundEdit{"fadeIn", "Fade In", fadeIn},
    SoundEdit{"fadeOut", "Fade Out", fadeOut},
    SoundEdit{"removeOffset", "Remove Offset", removeOffset},
    SoundEdit{"swapChannels", "Swap Channels", swapChannels},
    SoundEdit{"mixToMono", "Mix to Mono", mixToMono},
    SoundEdit{"trimSilence", "Trim Silence", trimSilence},
    SoundEdit{"trimToSelection", "Trim", keep, SoundEdit::Needs::Selection},
    SoundEdit{"delete", "Delete", remove, SoundEdit::Needs::Selection},
};
} // namespace

const SoundEdit *SoundEdits::named(QStringView name)
{
    const auto *found =
        std::ranges::find_if(edits, [&](const SoundEdit &edit) { return name == QLatin1String(edit.name); });
    return found == edits.end() ? nullptr : found;
}

void SoundEdits::changeGain(Sound &sound, FrameRange part, double decibels)
{
    shape(sound, part, [factor = static_cast<float>(std::pow(10, decibels / 20))](float) { return factor; });
}

Sound SoundEdits::cutOut(const Sound &sound, FrameRange part)
{
    Sound cut;
    cut.sampleRate = sound.sampleRate;
    for (const Samples &samples : sound.channels)
        cut.channels.emplace_back(samples.begin() + part.first, samples.begin() + part.last);
    return cut;
}

void SoundEdits::replace(Sound &sound, FrameRange part, const Sound &other)
{
    const size_t channels = sound.channels.size();
    for (size_t channel = channels; channel < other.channels.size(); ++channel)
        sound.channels.push_back(Samples(sound.channels[channel % channels]));
    const bool isAtEnd = part.last == sound.frames();
    for (size_t channel = 0; channel < sound.channels.size(); ++channel) {
        Samples &samples = sound.channels[channel];
        const Samples &put = other.channels[channel % other.channels.size()];
        const auto count = std::min<qint64>(part.count(), static_cast<qint64>(put.size()));
        std::copy_n(put.begin(), count, samples.begin() + part.first);
        if (isAtEnd)
            samples.insert(samples.end(), put.begin() + count, put.end());
    }
}

} // namespace demo
