#pragma once

#include "Sound.h"

#include <memory>
#include <span>

namespace demo
{

class SampleFile;

/// The samples of one state of a sound, kept outside of memory. What a state has in common with the one that it was
/// made from is kept once. Never changed, so any thread may read.
class SampleStore
{
public:
    /// @p origin, which may be null, is what @p sound was made from.
    explicit SampleStore(const Sound &sound, const SampleStore *origin = nullptr);

    double sampleRate() const { return m_sampleRate; } ///< Hz.
    int channelCount() const { return m_channels; }
    qint64 frames() const { return m_frames; }
    double seconds() const { return static_cast<double>(m_frames) / m_sampleRate; }

    /// Frames @p first to before @p last of a channel, which must lie within the sound.
    std::vector<float> samples(int channel, qint64 first, qint64 last) const;

    /// All of it, in memory.
    Sound sound() const;

    /// Frames that are kept for this state alone.
    qint64 ownFrames() const { return m_ownFrames; }

private:
    struct Piece
    {
        std::shared_ptr<const SampleFile> file;
        qint64 first; ///< In the file.
        qint64 count;
    };

    void _read(int channel, qint64 first, std::span<float> to) const;
    void _addShared(const SampleStore &origin, qint64 first, qint64 last);
    void _addOwn(const Sound &sound, qint64 first, qint64 last);
    qint64 _commonHead(const Sound &sound) const;
    qint64 _commonTail(const Sound &sound, qint64 most) const;

    double m_sampleRate;
    int m_channels;
    qint64 m_frames;
    qint64 m_ownFrames = 0;
    std::vector<Piece> m_pieces; ///< One after the other.
};

} // namespace demo
