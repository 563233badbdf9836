#include "QWFile.h"

#include "QWBase/files/QWFileTree.h"
#include "QWError.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/lists/Utf8.h>

#include <QDir>
#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using platform::System;

namespace
{
QByteArray realPath(const QString &path)
{
    return QFile::encodeName(System::current().locations().mapped(path));
}

std::filesystem::path nativePath(const QString &path)
{
    return realPath(path).toStdString();
}

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// True for success; else tells @p error what failed with @p path, in the words of @p format, and the system's reason.
bool succeeded(const std::error_code &code, const char *format, const QString &path, QWError *error)
{
    if (code && error) {
        const QString reason = QString::fromLocal8Bit(code.message().c_str());
        *error = QWError(platform::formatted(platform::localized(format), {path}), platform::localized(reason));
    }
    return !code;
}

/// What is at @p path, or none; mode 0 is no kind of file.
struct stat statusOf(const QString &path)
{
    struct stat status = {};
    if (::stat(realPath(path).constData(), &status) != 0)
        status = {};
    return status;
}

bool isSelfOrParent(const dirent &entry)
{
    return entry.d_name[0] == '.' && (!entry.d_name[1] || (entry.d_name[1] == '.' && !entry.d_name[2]));
}

/// Whether @p to lies in the folder @p from, where a copy would copy itself without end.
bool isWithin(const std::filesystem::path &to, const std::filesystem::path &from)
{
    std::error_code ignored;
    const auto inner = std::filesystem::weakly_canonical(to, ignored);
    const auto outer = std::filesystem::weakly_canonical(from, ignored);
    return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

std::error_code copyWhole(const std::filesystem::path &from, const std::filesystem::path &to)
{
    std::error_code ignored;
    if (std::filesystem::symlink_status(to, ignored).type() != std::filesystem::file_type::not_found)
        return std::make_error_code(std::errc::file_exists);
    if (std::filesystem::is_directory(std::filesystem::symlink_status(from, ignored)) && isWithin(to, from))
        return std::make_error_code(std::errc::invalid_argument);
    const std::error_code code = qw::copyTree(from, to);
    if (code)
        qw::removeTree(to);
    return code;
}
} // namespace

QString QWFile::conformPath(const QString &path)
{
    return path.isEmpty()
               ? path
               : QDir::cleanPath(QDir().absoluteFilePath(System::current().locations().expandingTilde(path)));
}

bool QWFile::existsAtPath(const QString &path)
{
    return statusOf(path).st_mode != 0;
}

bool QWFile::fileExistsAtPath(const QString &path)
{
    const mode_t mode = statusOf(path).st_mode;
    return mode != 0 && !S_ISDIR(mode);
}

bool QWFile::directoryExistsAtPath(const QString &path)
{
    return S_ISDIR(statusOf(path).st_mode);
}

std::optional<QStringList> QWFile::contentsOfDirectoryAtPath(const QString &path, QWError *error)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(::opendir(realPath(path).constData()), ::closedir);
    QStringList names;
    errno = folder ? 0 : errno;
    while (const dirent *const entry = folder ? ::readdir(folder.get()) : nullptr) {
        if (!isSelfOrParent(*entry))
            names += platform::textOfUtf8(entry->d_name);
        errno = 0;
    }
    if (!succeeded(lastError(), "The folder “%@” could not be read.", path, error))
        return std::nullopt;
    return names;
}

std::optional<qint64> QWFile::modificationDateOfFileAtPath(const QString &path)
{
    const struct stat status = statusOf(path);
    if (status.st_mode == 0)
        return std::nullopt;
    return qint64(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec;
}

bool QWFile::createFileAtPath(const QString &path, QWError *error)
{
    const int file = ::open(realPath(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    const std::error_code code = file < 0 || ::close(file) != 0 ? lastError() : std::error_code();
    return succeeded(code, "The file “%@” could not be created.", path, error);
}

bool QWFile::createDirectoryAtPath(const QString &path, QWError *error)
{
    std::error_code code;
    std::filesystem::create_directories(nativePath(path), code);
    if (!code && !directoryExistsAtPath(path))
        code = std::make_error_code(std::errc::not_a_directory);
    return succeeded(code, "The folder “%@” could not be created.", path, error);
}

bool QWFile::emptyDirectoryAtPath(const QString &path, QWError *error)
{
    return succeeded(qw::emptyFolder(nativePath(path)), "The folder “%@” could not be emptied.", path, error);
}

void QWFile::makeAccessibleAtPath(const QString &path)
{
    qw::makeTreeAccessible(nativePath(path));
}

bool QWFile::deleteFileAtPath(const QString &path, QWError *error)
{
    return succeeded(qw::removeTree(nativePath(path)), "“%@” could not be deleted.", path, error);
}

bool QWFile::copyPathToPath(const QString &from, const QString &to, QWError *error)
{
    return succeeded(copyWhole(nativePath(from), nativePath(to)), "“%@” could not be copied.", from, error);
}
