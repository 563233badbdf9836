#pragma once

#include <QString>

namespace qw
{

/// Names of presets and of the files that hold them.
namespace PresetNames
{

/// Such a file is no preset: the current changes, or what somebody hid.
bool isHidden(const QString &name);

QString withoutExtension(const QString &fileName);

/// An imported file keeps its name, as far as that is one of a preset; "" when nothing is left of it.
QString forFile(const QString &path);

} // namespace PresetNames

} // namespace qw
