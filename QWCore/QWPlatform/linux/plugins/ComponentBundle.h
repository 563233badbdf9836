#pragma once

#include "InstalledComponent.h"

#include <QStringList>

namespace platform
{

/// A ".component" bundle: its units stand in Info.plist ("AudioComponents"), in the 'thng' resources of
/// "Contents/Resources/<name>.rsrc", or in both.
namespace ComponentBundle
{

/// The files and folders whose modification times say that the bundle changed.
QStringList watchedPaths(const QString &path);

/// Every unit once, in the order found. The codes are the identity, so flags and flags mask are zero.
std::vector<InstalledComponent> components(const QString &path);

} // namespace ComponentBundle

} // namespace platform
