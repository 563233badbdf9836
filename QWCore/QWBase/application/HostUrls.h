#pragma once

#include <QStringList>

namespace qw
{

/// Those of @p texts that are URLs of the host's own schemes, as its Info.plist claims them, or of files that are
/// there. A host that claims none gets whatever looks like one with an authority ("scheme://…"). Main thread.
QStringList urlsForHost(QStringList texts);

/// @p arguments, those that name a file as URLs of it: relative to @p folder, and no device, pipe or folder, which are
/// rather an option's. An option ("-…") is no file, whatever is there.
QStringList withFilesAsUrls(QStringList arguments, const QString &folder);

/// Absolute path of the file that @p url leads to; "" when it is no URL of a file, or the host claims those as its own.
QString fileOfUrl(const QString &url);

} // namespace qw
