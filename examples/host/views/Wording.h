#pragma once

#include <QString>

namespace demo
{

struct Clip;

/// Figures as the windows write them.
namespace Wording
{

/// "0:04.250", "1:02:03.000".
QString time(double seconds);

/// Ruler labels: as many decimals as @p step needs.
QString rulerTime(double seconds, double step);

/// "-3.0 dB" with a true minus sign; "−∞ dB" for silence.
QString decibels(float value);

/// "48 kHz", "44.1 kHz".
QString sampleRate(double hertz);

/// "Mono", "Stereo", "6 channels".
QString channels(int count);

/// "0:04.000 · 48 kHz · Stereo".
QString summary(const Clip &clip);

} // namespace Wording

} // namespace demo
