#include "RegularFile.h"

#include "FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform
{

namespace
{
/// Bytes up to the end of the file, however long it is by now; none when it is longer than @p largest.
std::optional<QByteArray> readToEnd(int file, off_t expectedSize, qint64 largest)
{
    QByteArray data(std::max<qsizetype>(expectedSize, 0) + 1, Qt::Uninitialized);
    qsizetype filled = 0;
    for (;;) {
        const ssize_t count = ::read(file, data.data() + filled, static_cast<std::size_t>(data.size() - filled));
        if (count < 0 && errno != EINTR)
            return std::nullopt;
        if (count == 0)
            break;
        filled += std::max<ssize_t>(count, 0);
        if (filled > largest)
            return std::nullopt;
        if (filled == data.size())
            data.resize(data.size() * 2);
    }
    data.truncate(filled);
    return data;
}
} // namespace

std::optional<QByteArray> readRegularFile(const QByteArray &path, qint64 largest)
{
    const FileDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status;
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > largest)
        return std::nullopt;
    return readToEnd(file.number(), status.st_size, largest);
}

} // namespace platform
