#include "SoundFile.h"

#include "WorkProgress.h"

#include <QFile>
#include <QFileInfo>

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>

namespace demo::SoundFile
{

namespace
{
constexpr sf_count_t blockFrames = 16384;

struct CloseFile
{
    void operator()(SNDFILE *file) const { sf_close(file); }
};
using File = std::unique_ptr<SNDFILE, CloseFile>;

File openForReading(const QString &path, SF_INFO &info)
{
    return File(sf_open(QFile::encodeName(path).constData(), SFM_READ, &info));
}

QString reasonOf(SNDFILE *file)
{
    return QString::fromUtf8(sf_strerror(file));
}

float usable(float sample)
{
    return std::isfinite(sample) ? sample : 0.0f;
}

QString whyUnreadable(const QFileInfo &file)
{
    if (!file.exists())
        return QStringLiteral("The file is not there any more.");
    if (!file.isReadable())
        return QStringLiteral("You are not allowed to read the file.");
    return file.size() == 0 ? QStringLiteral("The file is empty.")
                            : QStringLiteral("This is not a sound file that can be read here.");
}

void append(Sound &sound, const std::vector<float> &interleaved, sf_count_t frames)
{
    const size_t count = sound.channels.size();
    for (size_t channel = 0; channel < count; ++channel) {
        for (size_t frame = 0; frame < static_cast<size_t>(frames); ++frame)
            sound.channels[channel].push_back(usable(interleaved[frame * count + channel]));
    }
}

/// What the header says of the length is only good for the progress bar: the file may be cut short.
bool readFrames(SNDFILE *file, sf_count_t expected, Sound &sound, WorkProgress &progress, QString *error)
{
    const int channels = sound.channelCount();
    std::vector<float> block(static_cast<size_t>(blockFrames * channels));
    while (const sf_count_t frames = std::max<sf_count_t>(sf_readf_float(file, block.data(), blockFrames), 0)) {
        if (progress.isCancelled())
            return false;
        append(sound, block, frames);
        const double part =
            static_cast<double>(sound.frames()) / static_cast<double>(std::max<sf_count_t>(expected, 1));
        progress.setFraction(std::min(1.0, part));
        if (sound.frames() * channels > maximumSamples) {
            *error = QStringLiteral("The sound is longer than this application can hold in memory.");
            return false;
        }
    }
    return true;
}

int sndfileFormat(Format format)
{
    switch (format) {
    case Format::WavFloat:
        return SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    case Format::Wav24:
        return SF_FORMAT_WAV | SF_FORMAT_PCM_24;
    case Format::AiffFloat:
        return SF_FORMAT_AIFF | SF_FORMAT_FLOAT;
    case Format::Aiff24:
        return SF_FORMAT_AIFF | SF_FORMAT_PCM_24;
    }
    Q_UNREACHABLE();
}

bool writeFrames(SNDFILE *file, const Sound &sound, WorkProgress &progress)
{
    std::vector<float> interleaved;
    for (qint64 first = 0; first < sound.frames(); first += blockFrames) {
        if (progress.isCancelled())
            return false;
        progress.setFraction(static_cast<double>(first) / static_cast<double>(sound.frames()));
        const qint64 frames = std::min<qint64>(blockFrames, sound.frames() - first);
        interleaved.clear();
        for (qint64 frame = first; frame < first + frames; ++frame) {
            for (const auto &channel : sound.channels)
                interleaved.push_back(channel[static_cast<size_t>(frame)]);
        }
        if (sf_writef_float(file, interleaved.data(), frames) != frames)
            return false;
    }
    return true;
}

bool writeWhole(const QString &path, const Sound &sound, Format format, WorkProgress &progress, QString *error)
{
    SF_INFO info{};
    info.samplerate = static_cast<int>(std::lround(sound.sampleRate));
    info.channels = sound.channelCount();
    info.format = sndfileFormat(format);
    const File file(sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info));
    if (file)
        sf_command(file.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
    if (file && writeFrames(file.get(), sound, progress))
        return true;
    *error = progress.isCancelled() ? QString() : reasonOf(file.get());
    return false;
}

bool takePlaceOf(const QString &part, const QString &path, QString *error)
{
    std::error_code code;
    std::filesystem::rename(part.toStdString(), path.toStdString(), code);
    if (code)
        *error = QString::fromStdString(code.message());
    return !code;
}
} // namespace

std::optional<Sound> read(const QString &path, WorkProgress &progress, QString *error)
{
    SF_INFO info{};
    const File file = openForReading(path, info);
    if (!file || info.channels < 1 || info.samplerate < 1) {
        *error = whyUnreadable(QFileInfo(path));
        return std::nullopt;
    }
    Sound sound;
    sound.sampleRate = info.samplerate;
    sound.channels.resize(static_cast<size_t>(info.channels));
    if (!readFrames(file.get(), info.frames, sound, progress, error))
        return std::nullopt;
    if (sound.isEmpty()) {
        *error = QStringLiteral("The file holds no sound.");
        return std::nullopt;
    }
    return sound;
}

bool write(const QString &path, const Sound &sound, Format format, WorkProgress &progress, QString *error)
{
    const QString part = path + QStringLiteral(".part");
    if (writeWhole(part, sound, format, progress, error) && takePlaceOf(part, path, error))
        return true;
    QFile::remove(part);
    return false;
}

QString extension(Format format)
{
    const bool aiff = format == Format::AiffFloat || format == Format::Aiff24;
    return aiff ? QStringLiteral("aiff") : QStringLiteral("wav");
}

} // namespace demo::SoundFile
