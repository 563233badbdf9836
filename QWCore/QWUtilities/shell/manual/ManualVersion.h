#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace platform
{
class UrlLoader;
}

namespace qw
{

/// A manual's version as a number: the dots are dropped and the rest is read as one integer ("2.1.3" is 213, so "10" is
/// less than "9.5"). Text without a number is 0.
quint32 manualVersionNumber(const QString &version);

/// The version that a manual's index page carries in its "qw_manual_version" tag; none when the tag or its end is not
/// found.
std::optional<quint32> manualVersionInPage(const QString &page);

/// True when the support site answers @p question and the manual at @p indexPath is older, or of unknown version.
/// Blocks; any thread.
bool isNewerManualOffered(platform::UrlLoader &loader, const QUrl &question, const QString &indexPath);

} // namespace qw
