#include "DownloadFailure.h"

#include "QWPlatform/foundation/Localization.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

namespace platform
{

namespace
{
struct FileError
{
    int number;
    const char *text; ///< "%@" stands for the folder.
};

constexpr FileError fileErrors[] = {
    {ENOSPC, "The disk is full."},
    {EDQUOT, "The disk is full."},
    {EFBIG, "The file is too large for its disk."},
    {ENOENT, "The folder “%@” is no longer there."},
    {ENOTDIR, "The folder “%@” is no longer there."},
    {EACCES, "The folder “%@” cannot be written to."},
    {EPERM, "The folder “%@” cannot be written to."},
    {EROFS, "The disk cannot be written to."},
    {ENAMETOOLONG, "The name of the file is too long."},
    {EINVAL, "The disk does not allow the name of the file."},
    {EISDIR, "A folder has the name of the file."},
};

QString keyOf(int errorNumber)
{
    const auto *const known = std::find_if(std::begin(fileErrors), std::end(fileErrors),
                                           [=](const FileError &error) { return error.number == errorNumber; });
    return known != std::end(fileErrors) ? QString::fromUtf8(known->text)
                                         : QString::fromLocal8Bit(std::generic_category().message(errorNumber).c_str());
}
} // namespace

QString descriptionOf(const DownloadFailure &failure)
{
    const QString text = localized(failure.errorNumber != 0 ? keyOf(failure.errorNumber) : failure.text);
    return failure.argument.isEmpty() ? text : formatted(text, {failure.argument});
}

} // namespace platform
