#pragma once

#include "Sound.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace demo
{

class WorkProgress;

/// Reads and writes sound files. Any thread.
namespace SoundFile
{

/// The numbers are kept in the settings.
enum class Format
{
    WavFloat,
    Wav24,
    AiffFloat,
    Aiff24,
    Wav16,
    Aiff16
};

/// Most samples (frames times channels) that are read: one gigabyte in memory.
constexpr qint64 maximumSamples = qint64(1) << 28;

/// Hz. A header that names another rate is not believed.
constexpr int lowestRate = 1000;
constexpr int highestRate = 1'536'000;

/// The sound in the file at @p path; none, and a sentence in @p error, when it cannot be read, holds no samples, is too
/// long or has a rate that no sound has. Samples that are no numbers are read as silence. Cancelled: none, and no
/// sentence.
std::optional<Sound> read(const QString &path, WorkProgress &progress, QString *error);

/// Writes beside @p path first and takes its place only when whole. The formats of 16 and 24 bits clip at full scale;
/// what was read from such a file is written with the same bits again. Cancelled: false, no sentence, and what was at
/// @p path is still there.
bool write(const QString &path, const Sound &sound, Format format, WorkProgress &progress, QString *error);

/// "wav" or "aiff".
QString extension(Format format);

/// All that formatFor() knows.
QStringList extensions();

/// @p format in the container that the extension of @p path says, else in its own.
Format formatFor(const QString &path, Format format);

/// False: louder samples survive.
bool clips(Format format);

} // namespace SoundFile

} // namespace demo
