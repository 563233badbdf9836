#pragma once

#include <QWBase/qwbase_private.h>

#include <QString>

/// Queries and changes of paths as texts; no disk is touched.
namespace QWPathStrings
{

/// The name shown for @p path: its last component, without the extension when that is one of a bundle, a sound file or
/// a file of the product ("Echo" for "/…/Echo.vst"). Others stay, since they may be part of a name ("Room 2.5").
QWBASE_SHARED_EXPORT QString filename(const QString &path);

/// Replaces the last component, which a trailing slash does not hide; @p component may itself have several.
QWBASE_SHARED_EXPORT void replaceLastPathComponent(QString &path, const QString &component);

} // namespace QWPathStrings
