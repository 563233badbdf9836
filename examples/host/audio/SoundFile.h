#pragma once

#include "Sound.h"

#include <QString>

#include <optional>

namespace demo
{

class WorkProgress;

/// Reads and writes sound files. Any thread.
namespace SoundFile
{

enum class Format
{
    WavFloat,
    Wav24,
    AiffFloat,
    Aiff24
};

/// Most samples (frames times channels) that are read: one gigabyte in memory.
constexpr qint64 maximumSamples = qint64(1) << 28;

/// The sound in the file at @p path; none, and a sentence in @p error, when it cannot be read, holds no samples or is
/// too long. Samples that are no numbers are read as silence. Cancelled: none, and no sentence.
std::optional<Sound> read(const QString &path, WorkProgress &progress, QString *error);

/// Writes beside @p path first and takes its place only when whole. The 24-bit formats clip at full scale. Cancelled:
/// false, no sentence, and what was at @p path is still there.
bool write(const QString &path, const Sound &sound, Format format, WorkProgress &progress, QString *error);

/// "wav" or "aiff".
QString extension(Format format);

} // namespace SoundFile

} // namespace demo
