#pragma once

#include <QtGlobal>

#include <vector>

namespace demo
{

/// Samples in memory, one vector a channel, all of one length. Full scale is -1.0 to 1.0; louder is allowed.
struct Sound
{
    double sampleRate = 48000; ///< Hz.
    std::vector<std::vector<float>> channels;

    int channelCount() const { return static_cast<int>(channels.size()); }
    qint64 frames() const { return channels.empty() ? 0 : static_cast<qint64>(channels.front().size()); }
    double seconds() const { return static_cast<double>(frames()) / sampleRate; }
    bool isEmpty() const { return frames() == 0; }
};

} // namespace demo
