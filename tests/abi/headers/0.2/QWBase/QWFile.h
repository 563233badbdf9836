#pragma once

#include <QWBase/qwbase_export.h>

#include <QStringList>

#include <optional>

class QWError;

/// Operations on files and folders by path. Every path may begin with "~" and is the documented one: the current
/// System says where it really lies. Main thread. A failure leaves its reason in @p error when one is given.
class QWBASE_EXPORT QWFile
{
public:
    QWFile() = delete;

    /// @p path with its tilde expanded, absolute, without ".", ".." and doubled or trailing slashes; links stay.
    static QString conformPath(const QString &path);

    /// Whether something is there; a link counts as what it leads to, so a dangling one is nothing.
    static bool existsAtPath(const QString &path);

    /// The same for something that is no folder.
    static bool fileExistsAtPath(const QString &path);

    /// The same for a folder.
    static bool directoryExistsAtPath(const QString &path);

    /// Entry names without "." and "..", in the order in which the system returns them; none when it cannot be read.
    static std::optional<QStringList> contentsOfDirectoryAtPath(const QString &path, QWError *error = nullptr);

    /// Exact, in nanoseconds since 1970 UTC, of what a link leads to; none when nothing is there.
    static std::optional<qint64> modificationDateOfFileAtPath(const QString &path);

    /// Makes an empty file, or empties an existing one. The folder must be there.
    static bool createFileAtPath(const QString &path, QWError *error = nullptr);

    /// Makes the folder and those above it; an existing folder is success.
    static bool createDirectoryAtPath(const QString &path, QWError *error = nullptr);

    /// Removes all that the folder holds, going on past what cannot be removed; the first such failure is told. Links
    /// inside are removed, never followed.
    static bool emptyDirectoryAtPath(const QString &path, QWError *error = nullptr);

    /// Gives the user back what permissions he lacks to read, change and remove the folder and all it holds, as far as
    /// they are his to give. Links inside are not followed.
    static void makeAccessibleAtPath(const QString &path);

    /// Removes a file, a link (not what it leads to), or a folder with all it holds. Nothing there is a failure.
    static bool deleteFileAtPath(const QString &path, QWError *error = nullptr);

    /// Copies a file, or a folder with all it holds: links as links, permissions and modification dates kept. Fails
    /// when something is at @p to; a failed copy leaves nothing there.
    static bool copyPathToPath(const QString &from, const QString &to, QWError *error = nullptr);
};
