#pragma once

#include <QString>

#include <functional>

/// Sound files copied into another container. Any thread.
namespace SoundConversion
{

/// Whether whole numbers of up to 24 bits hold what is kept in libsndfile's format @p format without loss. What was
/// compressed with loss counts as such, it is read as 24 bits.
bool isInteger24(int format);

/// Copies the sound of @p source into @p target, of libsndfile's major format @p container: sample for sample where
/// that can hold it, Vorbis excepted. False when that cannot be done, or @p goOn said no; it is asked now and then.
bool convert(const QString &source, const QString &target, int container, const std::function<bool()> &goOn);

} // namespace SoundConversion
