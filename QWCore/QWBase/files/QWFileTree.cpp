#include "QWFileTree.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace qw
{

namespace
{
std::error_code lastError()
{
    return {errno, std::generic_category()};
}

void giveToOwner(const fs::path &path, mode_t permissions)
{
    struct stat status;
    if (::stat(path.c_str(), &status) == 0 && (status.st_mode & permissions) != permissions)
        (void)::chmod(path.c_str(), (status.st_mode & 07777) | permissions); // what is another's stays as it is
}

/// After the content: a folder may be one that cannot be written to, and writing changes the date.
std::error_code copyAttributes(const struct stat &source, const fs::path &to)
{
    const timespec times[] = {source.st_atim, source.st_mtim};
    if (!S_ISLNK(source.st_mode) && ::chmod(to.c_str(), source.st_mode & 07777) != 0)
        return lastError();
    return ::utimensat(AT_FDCWD, to.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0 ? std::error_code() : lastError();
}

std::error_code copyFolderContent(const fs::path &from, const fs::path &to)
{
    if (::mkdir(to.c_str(), 0700) != 0)
        return lastError();
    std::error_code error;
    fs::directory_iterator entry(from, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        if (const std::error_code failed = copyTree(entry->path(), to / entry->path().filename()))
            return failed;
    return error;
}

std::error_code copyContent(const struct stat &source, const fs::path &from, const fs::path &to)
{
    std::error_code error;
    if (S_ISDIR(source.st_mode))
        return copyFolderContent(from, to);
    if (S_ISLNK(source.st_mode))
        fs::copy_symlink(from, to, error);
    else if (S_ISREG(source.st_mode))
        fs::copy_file(from, to, error);
    else
        return std::make_error_code(std::errc::operation_not_supported); // a pipe, socket or device
    return error;
}
} // namespace

std::error_code removeTree(const fs::path &path)
{
    if (::unlink(path.c_str()) == 0)
        return {};
    if (errno != EISDIR)
        return lastError();
    if (path.lexically_normal() == "/")
        return std::make_error_code(std::errc::operation_not_permitted);
    std::error_code error;
    if (fs::remove_all(path, error) == 0 && !error)
        return std::make_error_code(std::errc::no_such_file_or_directory);
    return error;
}

std::error_code emptyFolder(const fs::path &folder)
{
    std::error_code error;
    std::error_code first;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        if (const std::error_code failed = removeTree(entry->path()); failed && !first)
            first = failed;
    return first ? first : error;
}

void makeTreeAccessible(const fs::path &folder)
{
    giveToOwner(folder, S_IRWXU);
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        struct stat status;
        if (::lstat(entry->path().c_str(), &status) != 0)
            continue;
        if (S_ISDIR(status.st_mode))
            makeTreeAccessible(entry->path());
        else if (S_ISREG(status.st_mode))
            giveToOwner(entry->path(), S_IRUSR | S_IWUSR);
    }
}

std::error_code copyTree(const fs::path &from, const fs::path &to)
{
    struct stat source;
    if (::lstat(from.c_str(), &source) != 0)
        return lastError();
    const std::error_code error = copyContent(source, from, to);
    return error ? error : copyAttributes(source, to);
}

} // namespace qw
