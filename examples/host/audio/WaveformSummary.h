#pragma once

#include <QtGlobal>

#include <vector>

namespace demo
{

class SampleStore;
struct Sound;

/// Least, greatest and effective value of every 256 frames of each channel, from which a waveform of any width is
/// drawn at once.
class WaveformSummary
{
public:
    static constexpr qint64 bucketFrames = 256;

    /// What one column of pixels shows.
    struct Column
    {
        float least = 0;
        float greatest = 0;
        float effective = 0; ///< Root of the mean square.
    };

    WaveformSummary() = default;
    explicit WaveformSummary(const Sound &sound);

    /// @p count columns over @p frames frames from frame @p start on of channel @p channel of the sound that was summed
    /// up, whose samples are looked at where the buckets are too coarse. Columns beyond its end are silent.
    std::vector<Column> columns(const SampleStore &store, int channel, qint64 start, qint64 frames, int count) const;

private:
    struct Bucket
    {
        float least;
        float greatest;
        float squares; ///< Sum over the bucket's frames.
    };

    static Bucket _sum(const float *samples, qint64 frames);
    static Column _fromSamples(const float *samples, qint64 frames);
    static Column _fromBuckets(const std::vector<Bucket> &buckets, qint64 first, qint64 last, qint64 frames);

    std::vector<std::vector<Bucket>> m_channels;
};

} // namespace demo
