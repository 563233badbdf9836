#include "WaveformSummary.h"

#include "Sound.h"

#include <algorithm>
#include <cmath>

namespace demo
{

WaveformSummary::WaveformSummary(const Sound &sound)
{
    for (const auto &samples : sound.channels) {
        const auto frames = static_cast<qint64>(samples.size());
        auto &buckets = m_channels.emplace_back();
        buckets.reserve(static_cast<size_t>(frames / bucketFrames + 1));
        for (qint64 first = 0; first < frames; first += bucketFrames)
            buckets.push_back(_sum(samples.data() + first, std::min(bucketFrames, frames - first)));
    }
}

WaveformSummary::Bucket WaveformSummary::_sum(const float *samples, qint64 frames)
{
    Bucket bucket{samples[0], samples[0], 0};
    for (qint64 i = 0; i < frames; ++i) {
        bucket.least = std::min(bucket.least, samples[i]);
        bucket.greatest = std::max(bucket.greatest, samples[i]);
        bucket.squares += samples[i] * samples[i];
    }
    return bucket;
}

WaveformSummary::Column WaveformSummary::_fromSamples(const std::vector<float> &samples, qint64 first,
                                                      qint64 last) const
{
    const Bucket sum = _sum(samples.data() + first, last - first);
    return {sum.least, sum.greatest, std::sqrt(sum.squares / static_cast<float>(last - first))};
}

WaveformSummary::Column WaveformSummary::_fromBuckets(const std::vector<Bucket> &buckets, qint64 first, qint64 last,
                                                      qint64 frames) const
{
    Bucket sum = buckets[static_cast<size_t>(first)];
    for (qint64 i = first + 1; i < last; ++i) {
        const Bucket &bucket = buckets[static_cast<size_t>(i)];
        sum.least = std::min(sum.least, bucket.least);
        sum.greatest = std::max(sum.greatest, bucket.greatest);
        sum.squares += bucket.squares;
    }
    const qint64 summed = std::min(last * bucketFrames, frames) - first * bucketFrames;
    return {sum.least, sum.greatest, std::sqrt(sum.squares / static_cast<float>(summed))};
}

std::vector<WaveformSummary::Column> WaveformSummary::columns(const Sound &sound, int channel, qint64 start,
                                                              qint64 frames, int count) const
{
    std::vector<Column> result(static_cast<size_t>(std::max(count, 0)));
    const auto &samples = sound.channels[static_cast<size_t>(channel)];
    const auto &buckets = m_channels[static_cast<size_t>(channel)];
    const auto length = static_cast<qint64>(samples.size());
    const bool coarse = count > 0 && frames / count >= 2 * bucketFrames;
    for (int i = 0; i < count; ++i) {
        const qint64 first = start + frames * i / count;
        const qint64 last = std::min(std::max(start + frames * (i + 1) / count, first + 1), length);
        if (first >= length)
            break;
        result[static_cast<size_t>(i)] =
            coarse ? _fromBuckets(buckets, first / bucketFrames, (last - 1) / bucketFrames + 1, length)
                   : _fromSamples(samples, first, last);
    }
    return result;
}

} // namespace demo
