#include "TestTone.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace demo
{

namespace
{
constexpr double rate = 48000;
constexpr double toneLength = 4; // seconds

struct Tone
{
    double start;     ///< Seconds.
    double frequency; ///< Hz.
    double level;
    double pan;   ///< 0: left, 1: right.
    double decay; ///< Seconds to fall to a third.
};

constexpr Tone tones[] = {
    {0.00, 110.00, 0.34, 0.50, 0.60}, {0.00, 220.00, 0.24, 0.30, 0.30}, {0.25, 329.63, 0.22, 0.65, 0.22},
    {0.50, 440.00, 0.24, 0.25, 0.20}, {0.75, 554.37, 0.22, 0.75, 0.18}, {1.00, 659.26, 0.26, 0.50, 0.35},
    {1.50, 87.31, 0.36, 0.50, 0.55},  {1.50, 349.23, 0.22, 0.70, 0.26}, {1.75, 440.00, 0.20, 0.35, 0.20},
    {2.00, 523.25, 0.22, 0.60, 0.18}, {2.25, 698.46, 0.24, 0.40, 0.30}, {2.75, 98.00, 0.36, 0.50, 0.45},
    {2.75, 392.00, 0.24, 0.30, 0.30}, {3.00, 493.88, 0.24, 0.70, 0.35},
};

/// A plucked string in four partials, the higher ones dying sooner, with a 3 ms attack. Each partial turns and shrinks
/// by one factor from frame to frame, which costs a fraction of a sine and a power.
class Pluck
{
public:
    Pluck(double frequency, double decay)
    {
        for (int partial = 1; partial <= partials; ++partial) {
            const Phasor perSecond(-partial / decay, 2 * std::numbers::pi * frequency * partial);
            m_values[partial - 1] = 1.0 / (partial * partial);
            m_steps[partial - 1] = std::exp(perSecond / rate);
        }
    }

    double next()
    {
        double value = 0;
        for (int i = 0; i < partials; ++i) {
            value += m_values[i].imag();
            m_values[i] *= m_steps[i];
        }
        value *= 1 - m_silence;
        m_silence *= m_silenceStep;
        return value;
    }

private:
    using Phasor = std::complex<double>;
    static constexpr int partials = 4;

    Phasor m_values[partials];
    Phasor m_steps[partials];
    double m_silence = 1; ///< What the attack still holds back.
    const double m_silenceStep = std::exp(-1 / (0.003 * rate));
};

void play(Sound &sound, const Tone &tone)
{
    const double left = std::cos(tone.pan * std::numbers::pi / 2) * tone.level;
    const double right = std::sin(tone.pan * std::numbers::pi / 2) * tone.level;
    const double end = tone.start + 12 * tone.decay; // by then it is 100 dB down
    const auto last = std::min(sound.channels[0].size(), static_cast<size_t>(end * rate));
    Pluck pluck(tone.frequency, tone.decay);
    for (auto frame = static_cast<size_t>(tone.start * rate); frame < last; ++frame) {
        const double value = pluck.next();
        sound.channels[0][frame] += static_cast<float>(left * value);
        sound.channels[1][frame] += static_cast<float>(right * value);
    }
}

void setPeak(Sound &sound, float wanted)
{
    float peak = 0;
    for (const auto &channel : sound.channels) {
        for (const float sample : channel)
            peak = std::max(peak, std::abs(sample));
    }
    for (auto &channel : sound.channels) {
        for (float &sample : channel)
            sample *= wanted / peak;
    }
}

void fadeOutLast(Sound &sound, size_t frames)
{
    for (auto &channel : sound.channels) {
        for (size_t i = 0; i < frames; ++i)
            channel[channel.size() - 1 - i] *= static_cast<float>(i) / static_cast<float>(frames);
    }
}
} // namespace

Sound makeTestTone()
{
    Sound sound;
    sound.sampleRate = rate;
    sound.channels.assign(2, std::vector<float>(static_cast<size_t>(toneLength * rate)));
    for (const Tone &tone : tones)
        play(sound, tone);
    fadeOutLast(sound, 2400);
    setPeak(sound, 0.79f);
    return sound;
}

} // namespace demo
