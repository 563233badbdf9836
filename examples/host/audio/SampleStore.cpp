#include "SampleStore.h"

#include "SampleFile.h"

#include <algorithm>

namespace demo
{

namespace
{
constexpr qint64 blockFrames = 65536; ///< Compared at a time.

std::span<const float> partOf(const std::vector<float> &samples, qint64 first, qint64 last)
{
    return std::span(samples).subspan(static_cast<size_t>(first), static_cast<size_t>(last - first));
}
} // namespace

SampleStore::SampleStore(const Sound &sound, const SampleStore *origin)
    : m_sampleRate(sound.sampleRate)
    , m_channels(sound.channelCount())
    , m_frames(sound.frames())
{
    const bool isLike = origin && origin->m_channels == m_channels;
    const qint64 head = isLike ? origin->_commonHead(sound) : 0;
    const qint64 tail = isLike ? origin->_commonTail(sound, std::min(m_frames, origin->m_frames) - head) : 0;
    if (isLike)
        _addShared(*origin, 0, head);
    _addOwn(sound, head, m_frames - tail);
    if (isLike)
        _addShared(*origin, origin->m_frames - tail, origin->m_frames);
}

void SampleStore::_addShared(const SampleStore &origin, qint64 first, qint64 last)
{
    qint64 begin = 0; // of the piece
    for (const Piece &piece : origin.m_pieces) {
        const qint64 from = std::max(first, begin);
        const qint64 to = std::min(last, begin + piece.count);
        if (from < to)
            m_pieces.push_back({piece.file, piece.first + from - begin, to - from});
        begin += piece.count;
    }
}

void SampleStore::_addOwn(const Sound &sound, qint64 first, qint64 last)
{
    if (first == last)
        return;
    std::vector<std::span<const float>> parts;
    for (const auto &samples : sound.channels)
        parts.push_back(partOf(samples, first, last));
    m_ownFrames = last - first;
    m_pieces.push_back({std::make_shared<const SampleFile>(parts), 0, m_ownFrames});
}

/// Frames at the start that @p sound has as well.
qint64 SampleStore::_commonHead(const Sound &sound) const
{
    qint64 head = std::min(m_frames, sound.frames());
    for (int channel = 0; channel < m_channels; ++channel) {
        const auto &other = sound.channels[static_cast<size_t>(channel)];
        for (qint64 first = 0; first < head; first += blockFrames) {
            const auto mine = samples(channel, first, std::min(first + blockFrames, head));
            const auto end = std::ranges::mismatch(mine, partOf(other, first, first + qint64(mine.size()))).in1;
            if (end != mine.end())
                head = first + (end - mine.begin());
        }
    }
    return head;
}

/// Frames at the end that @p sound has as well, @p most at the most.
qint64 SampleStore::_commonTail(const Sound &sound, qint64 most) const
{
    qint64 tail = most;
    for (int channel = 0; channel < m_channels; ++channel) {
        const auto &other = sound.channels[static_cast<size_t>(channel)];
        for (qint64 last = 0; last < tail; last += blockFrames) {
            const qint64 count = std::min(blockFrames, tail - last);
            auto mine = samples(channel, m_frames - last - count, m_frames - last);
            std::ranges::reverse(mine);
            const auto theirs = partOf(other, sound.frames() - last - count, sound.frames() - last);
            const auto end = std::mismatch(mine.begin(), mine.end(), theirs.rbegin()).first;
            if (end != mine.end())
                tail = last + (end - mine.begin());
        }
    }
    return tail;
}

void SampleStore::_read(int channel, qint64 first, std::span<float> to) const
{
    const qint64 last = first + static_cast<qint64>(to.size());
    qint64 begin = 0; // of the piece
    for (const Piece &piece : m_pieces) {
        const qint64 from = std::max(first, begin);
        const qint64 end = std::min(last, begin + piece.count);
        if (from < end)
            piece.file->read(channel, piece.first + from - begin,
                             to.subspan(static_cast<size_t>(from - first), static_cast<size_t>(end - from)));
        begin += piece.count;
    }
}

std::vector<float> SampleStore::samples(int channel, qint64 first, qint64 last) const
{
    std::vector<float> result(static_cast<size_t>(last - first));
    _read(channel, first, result);
    return result;
}

Sound SampleStore::sound() const
{
    Sound sound;
    sound.sampleRate = m_sampleRate;
    for (int channel = 0; channel < m_channels; ++channel)
        sound.channels.push_back(samples(channel, 0, m_frames));
    return sound;
}

} // namespace demo
