#pragma once

#include <QByteArray>
#include <QString>

/// Archives of a manual, and what lies in files.
namespace manuals
{
/// Has its version in the head.
QByteArray pageWithVersion(const QByteArray &version);

/// An archive that lines of Python fill through "z" and link(name, to), which lets names and links be anything.
QByteArray archiveOf(const QByteArray &script);

/// One with an index page of that version and another page in a folder.
QByteArray goodArchive(const QByteArray &version);

/// "(missing)" for a file that cannot be read.
QByteArray contentsOf(const QString &path);

/// Makes the folder too.
void writeTo(const QString &path, const QByteArray &data);
} // namespace manuals
