#include "WaveformSummary.h"

#include "SampleStore.h"

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

WaveformSummary::Column WaveformSummary::_fromSamples(const float *samples, qint64 frames)
{
    const Bucket sum = _sum(samples, frames);
    return {sum.least, sum.greatest, std::sqrt(sum.squares / static_cast<float>(frames))};
}

WaveformSummary::Column WaveformSummary::_fromBuckets(const std::vector<Bucket> &buckets, qint64 first, qint64 last,
                                                      qint64 frames)
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

std::vector<WaveformSummary::Column> WaveformSummary::columns(const SampleStore &store, int channel, qint64 start,
                                                              qint64 frames, int count) const
{
    std::vector<Column> result(static_cast<size_t>(std::max(count, 0)));
    const auto &buckets = m_channels[static_cast<size_t>(channel)];
    const qint64 length = store.frames();
    const auto begin = [&](qint64 column) { return start + frames * column / count; };
    const auto end = [&](qint64 column) { return std::min(std::max(begin(column + 1), begin(column) + 1), length); };
    const bool coarse = count > 0 && frames / count >= 2 * bucketFrames;
    std::vector<float> samples;
    if (!coarse && count > 0 && start < length)
        samples = store.samples(channel, start, std::max(end(count - 1), start));
    for (int i = 0; i < count && begin(i) < length; ++i)
        result[static_cast<size_t>(i)] =
            coarse ? _fromBuckets(buckets, begin(i) / bucketFrames, (end(i) - 1) / bucketFrames + 1, length)
                   : _fromSamples(samples.data() + (begin(i) - start), end(i) - begin(i));
    return result;
}

} // namespace demo
