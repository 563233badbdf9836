#pragma once

#include <audio/Clip.h>

#include <cmath>
#include <numbers>

/// Sounds for tests.
namespace sounds
{

/// A sine of @p hertz and @p level in every channel.
inline demo::Sound sine(double hertz, float level, int channels, qint64 frames, double rate = 48000)
{
    demo::Sound sound;
    sound.sampleRate = rate;
    for (int channel = 0; channel < channels; ++channel) {
        auto &samples = sound.channels.emplace_back();
        for (qint64 frame = 0; frame < frames; ++frame)
            samples.push_back(
                level * static_cast<float>(std::sin(2 * std::numbers::pi * hertz * static_cast<double>(frame) / rate)));
    }
    return sound;
}

/// One value all along; @p values one a channel.
inline demo::Sound constant(const std::vector<float> &values, qint64 frames)
{
    demo::Sound sound;
    for (const float value : values)
        sound.channels.emplace_back(static_cast<size_t>(frames), value);
    return sound;
}

inline demo::ClipPointer clip(float level = 0.5f)
{
    return std::make_shared<const demo::Clip>(constant({level}, 480));
}

} // namespace sounds
