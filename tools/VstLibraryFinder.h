#pragma once

#include <QStringList>

/// The bare VST libraries that distributions and makers install.
namespace VstLibraryFinder
{

/// VST_PATH, then the usual folders of the user and the system; real paths, not all of which need exist.
QStringList usualFolders(const QString &home);

/// The files "*.so" below @p folders, also through links to folders, each once whatever links lead to it, in order;
/// whether they are VST plug-ins is another question.
QStringList candidates(const QStringList &folders);

/// Whether the library at @p path can be asked for a VST plug-in.
bool isVstLibrary(const QString &path);

} // namespace VstLibraryFinder
