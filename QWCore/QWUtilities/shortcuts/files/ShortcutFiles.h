#pragma once

#include <QWBase/QWError.h>

#include <QString>
#include <QVariantList>

#include <optional>

namespace qw
{

/// Files of shortcut dictionaries: the factory definition, current changes, presets and exchange files. Paths are real
/// ones.
namespace ShortcutFiles
{

/// The array in the file; none when there is no such file, it cannot be read, or holds something else.
std::optional<QVariantList> readArray(const QString &path);

/// Writes in place. A represented object that no file can hold is left out; a write that fails, on a full disk for
/// one, leaves what was there before, or nothing, and says why.
bool writeArray(const QString &path, const QVariantList &array, QWError *error = nullptr);

/// Moves a file out of the way of the next write, under a name that is no preset's and that no other file has. False,
/// with the reason, when it stays where it is.
bool setAside(const QString &path, QWError *error = nullptr);

} // namespace ShortcutFiles

} // namespace qw
