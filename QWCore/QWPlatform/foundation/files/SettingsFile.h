#pragma once

#include "LockFile.h"

#include <QString>
#include <QVariant>

#include <map>
#include <optional>

namespace platform
{

/// The file of a host's settings, which several programs may write. Any thread.
namespace SettingsFile
{

/// New values of keys; none removes the key.
using Changes = std::map<QString, std::optional<QVariant>>;

/// What the file holds; nothing where it is missing or cannot be read.
QVariantMap values(const QString &path);

/// Applies @p changes to what the file holds now, under the lock beside it, and hands back what it holds then; none
/// when it could not be written. A file that is no list of settings is moved aside first.
std::optional<QVariantMap> apply(const QString &path, const Changes &changes, LockFile::Patience patience,
                                 const std::atomic<bool> *hurry = nullptr);

} // namespace SettingsFile

} // namespace platform
