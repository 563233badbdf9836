#include "SoundFile.h"

#include "WorkProgress.h"

#include <QFile>
#include <QFileInfo>

#include <sndfile.h>

#include <algorithm>
#include <array>
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

/// A pipe may never have anything to say, and holds up who opens it.
File openForReading(const QString &path, SF_INFO &info)
{
    if (!QFileInfo(path).isFile())
        return nullptr;
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
    return file.isFile() && file.size() == 0 ? QStringLiteral("The file is empty.")
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

struct FormatFacts
{
    Format format;
    int container;
    int samples;
    int bits; ///< 0: floating point.
};

constexpr std::array formats{FormatFacts{Format::WavFloat, SF_FORMAT_WAV, SF_FORMAT_FLOAT, 0},
                             FormatFacts{Format::Wav24, SF_FORMAT_WAV, SF_FORMAT_PCM_24, 24},
                             FormatFacts{Format::Wav16, SF_FORMAT_WAV, SF_FORMAT_PCM_16, 16},
                             FormatFacts{Format::AiffFloat, SF_FORMAT_AIFF, SF_FORMAT_FLOAT, 0},
                             FormatFacts{Format::Aiff24, SF_FORMAT_AIFF, SF_FORMAT_PCM_24, 24},
                             FormatFacts{Format::Aiff16, SF_FORMAT_AIFF, SF_FORMAT_PCM_16, 16}};

struct Extension
{
    const char *text;
    int container;
};

constexpr std::array knownExtensions{Extension{"wav", SF_FORMAT_WAV}, Extension{"aiff", SF_FORMAT_AIFF},
                                     Extension{"aif", SF_FORMAT_AIFF}};

const FormatFacts &factsOf(Format format)
{
    return *std::ranges::find(formats, format, &FormatFacts::format);
}

/// In the upper bits of an int, as the library takes it. Its own conversion rounds down and scales by one step less
/// than its reading does, so that each round trip would change samples.
int quantised(float sample, int bits)
{
    const double steps = std::ldexp(1.0, bits - 1);
    const double step = std::clamp(std::nearbyint(static_cast<double>(sample) * steps), -steps, steps - 1);
    return static_cast<int>(std::ldexp(step, 32 - bits));
}

bool writeBlock(SNDFILE *file, const std::vector<float> &interleaved, qint64 frames, int bits)
{
    if (bits == 0)
        return sf_writef_float(file, interleaved.data(), frames) == frames;
    std::vector<int> whole;
    for (const float sample : interleaved)
        whole.push_back(quantised(usable(sample), bits));
    return sf_writef_int(file, whole.data(), frames) == frames;
}

bool writeFrames(SNDFILE *file, const Sound &sound, int bits, WorkProgress &progress)
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
        if (!writeBlock(file, interleaved, frames, bits))
            return false;
    }
    return true;
}

bool writeWhole(const QString &path, const Sound &sound, Format format, WorkProgress &progress, QString *error)
{
    const FormatFacts &facts = factsOf(format);
    SF_INFO info{};
    info.samplerate = static_cast<int>(std::lround(sound.sampleRate));
    info.channels = sound.channelCount();
    info.format = facts.container | facts.samples;
    const File file(sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info));
    if (file && writeFrames(file.get(), sound, facts.bits, progress))
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
    if (!file || info.channels < 1) {
        *error = whyUnreadable(QFileInfo(path));
        return std::nullopt;
    }
    if (info.samplerate < lowestRate || info.samplerate > highestRate) {
        *error = QStringLiteral("The file names a sample rate that no sound has.");
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
    const auto *const found = std::ranges::find(knownExtensions, factsOf(format).container, &Extension::container);
    return QLatin1String(found->text);
}

QStringList extensions()
{
    QStringList all;
    for (const Extension &extension : knownExtensions)
        all += QLatin1String(extension.text);
    return all;
}

Format formatFor(const QString &path, Format format)
{
    const QString suffix = QFileInfo(path).suffix();
    for (const Extension &extension : knownExtensions) {
        for (const FormatFacts &facts : formats) {
            if (suffix.compare(QLatin1String(extension.text), Qt::CaseInsensitive) == 0 &&
                facts.container == extension.container && facts.bits == factsOf(format).bits)
                return facts.format;
        }
    }
    return format;
}

bool clips(Format format)
{
    return factsOf(format).bits > 0;
}

} // namespace demo::SoundFile
