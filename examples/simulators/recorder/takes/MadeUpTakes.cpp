#include "MadeUpTakes.h"

#include "SoundFormats.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTimeZone>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <sndfile.h>

namespace
{
constexpr std::array places{"Studio", "Kitchen", "Forest", "Church", "Rehearsal Room", "Harbour", "Café", "Attic"};
constexpr std::array things{"Birds", "Piano", "Choir", "Rain", "Guitar", "Strings", "Voices", "Drums", "Bells", "Idea"};
constexpr std::array qualities{MadeUpSound{.rate = 48000, .bits = 24}, MadeUpSound{.rate = 44100, .bits = 16},
                               MadeUpSound{.rate = 22050, .bits = 16}};
constexpr qint64 headerSize = 44; ///< Of a WAVE file.

const QDateTime firstMorning(QDate(2024, 3, 1), QTime(8, 30), Qt::UTC);

size_t pick(QRandomGenerator &dice, size_t count)
{
    return dice.bounded(static_cast<quint32>(count));
}

RecorderTake takeNumber(int number, const MadeUpTakes::Wish &wish)
{
    QRandomGenerator dice(static_cast<quint32>(number));
    const QString place = places[pick(dice, places.size())];
    const QString thing = things[pick(dice, things.size())];
    RecorderTake take;
    take.title = number % 3 == 0 ? QString("Take %1").arg(number) : QString("%1, %2 %3").arg(thing, place).arg(number);
    take.filename = QString("take-%1").arg(number, 6, 10, QChar(u'0'));
    take.keywords = (place + ' ' + thing + (number % 5 == 0 ? " outdoor" : " indoor")).toLower();
    take.creationDate = firstMorning.addSecs(qint64(number) * 3607);
    take.modificationDate = take.creationDate.addSecs(dice.bounded(86400));
    take.channels = number % 7 == 0 ? 6 : number % 4 == 0 ? 1 : 2;
    take.quality = static_cast<int>(pick(dice, qualities.size()));
    take.locked = number % 9 == 0;
    take.madeUp = qualities[static_cast<size_t>(take.quality)];
    take.madeUp.seed = static_cast<quint32>(number);
    const double length = wish.length > 0 ? wish.length : 2 + dice.bounded(28.0);
    take.madeUp.frames = std::max<qint64>(2, std::llround(length * take.madeUp.rate) / 2 * 2);
    take.length = static_cast<double>(take.madeUp.frames) / take.madeUp.rate;
    take.fileSize = headerSize + take.madeUp.frames * take.channels * take.madeUp.bits / 8;
    take.formats = SoundFormats::offered({.channels = take.channels, .rate = take.madeUp.rate, .isInteger24 = true},
                                         wish.withProgram);
    return take;
}

/// Plucked notes of a scale, chosen by the seed, which wander through the channels.
class Phrase
{
public:
    Phrase(const MadeUpSound &sound, int channels)
        : m_sound(sound)
        , m_channels(channels)
        , m_noteFrames(sound.rate * 2 / 5)
    {
    }

    void render(qint64 first, std::vector<float> &samples) const
    {
        for (size_t i = 0; i < samples.size(); i += static_cast<size_t>(m_channels))
            _renderFrame(first + static_cast<qint64>(i) / m_channels, &samples[i]);
    }

private:
    void _renderFrame(qint64 frame, float *samples) const
    {
        const quint32 note = static_cast<quint32>(frame / m_noteFrames);
        const double time = static_cast<double>(frame % m_noteFrames) / m_sound.rate;
        const double phase = 2 * std::numbers::pi * _pitch(note) * time;
        const double envelope = 0.5 * std::exp(-5 * time) * std::min(1.0, time * 500);
        const double value = envelope * (std::sin(phase) + 0.3 * std::sin(2 * phase));
        for (int channel = 0; channel < m_channels; ++channel) {
            const int distance = (channel + static_cast<int>(note % 64)) % m_channels;
            samples[channel] = static_cast<float>(value / (1 + distance));
        }
    }

    double _pitch(quint32 note) const
    {
        constexpr std::array steps{0, 2, 4, 7, 9, 12, 14, 16};
        const quint32 hash = (note * 2654435761U) ^ (m_sound.seed * 40503U);
        return 220 * std::exp2(steps[(hash >> 13) % steps.size()] / 12.0);
    }

    MadeUpSound m_sound;
    int m_channels;
    qint64 m_noteFrames;
};
} // namespace

std::vector<RecorderTake> MadeUpTakes::takes(const Wish &wish)
{
    std::vector<RecorderTake> takes;
    takes.reserve(static_cast<size_t>(wish.count));
    for (int number = 1; number <= wish.count; ++number)
        takes.push_back(takeNumber(number, wish));
    return takes;
}

bool MadeUpTakes::writeSound(const MadeUpSound &sound, int channels, const QString &path,
                             const std::function<bool()> &goOn)
{
    SF_INFO info{};
    info.samplerate = sound.rate;
    info.channels = channels;
    info.format = SF_FORMAT_WAV | (sound.bits == 24 ? SF_FORMAT_PCM_24 : SF_FORMAT_PCM_16);
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE *)> file(
        sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info), sf_close);
    const Phrase phrase(sound, channels);
    std::vector<float> samples;
    qint64 done = 0;
    for (qint64 count = 0; file && done < sound.frames && goOn(); done += count) {
        count = std::min<qint64>(4096, sound.frames - done);
        samples.resize(static_cast<size_t>(count * channels));
        phrase.render(done, samples);
        if (sf_writef_float(file.get(), samples.data(), count) != count)
            return false;
    }
    return file && done == sound.frames;
}
