#include "CatalogFile.h"

#include "CatalogXmlWriter.h"

#include <QWPlatform/foundation/files/FileDescriptor.h>
#include <QWPlatform/foundation/files/RegularFile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace qw
{

namespace
{
bool same(const timespec &a, const timespec &b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// A piece of the text that fits the processor's cache: written while it is still there.
constexpr std::size_t pieceSize = 128 * 1024;

/// Writes what @p writer holds at @p at, empties it and moves @p at behind.
bool writePiece(int file, CatalogXmlWriter &writer, off_t &at)
{
    std::string_view text = writer.text();
    while (!text.empty()) {
        const ssize_t count = ::pwrite(file, text.data(), text.size(), at);
        if (count < 0 && errno != EINTR)
            return false;
        const auto written = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        text.remove_prefix(written);
        at += static_cast<off_t>(written);
    }
    writer.clear();
    return true;
}

bool cutTo(int file, off_t size)
{
    struct stat status;
    return ::fstat(file, &status) == 0 && (status.st_size == size || ::ftruncate(file, size) == 0);
}
} // namespace

CatalogFile::Identity::Identity(const struct stat &status)
    : device(status.st_dev)
    , inode(status.st_ino)
    , size(status.st_size)
    , modified(status.st_mtim)
    , changed(status.st_ctim)
{
}

bool CatalogFile::Identity::operator==(const Identity &other) const
{
    return device == other.device && inode == other.inode && size == other.size && same(modified, other.modified) &&
           same(changed, other.changed);
}

CatalogFile::CatalogFile(const QString &path)
    : m_path(QFile::encodeName(path))
{
}

std::optional<QByteArray> CatalogFile::read() const
{
    return platform::readRegularFile(m_path);
}

void CatalogFile::save(std::size_t count, std::size_t firstChanged, const RecordAt &recordAt)
{
    const platform::FileDescriptor file(_open());
    struct stat status;
    const auto left = std::exchange(m_left, std::nullopt);
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return;
    const bool untouched = left && *left == Identity(status);
    if (_save(file.number(), count, untouched ? firstChanged : 0, recordAt) && ::fstat(file.number(), &status) == 0)
        m_left.emplace(status);
}

int CatalogFile::_open() const
{
    // Not truncated: overwriting the pages that are there and cutting the end off costs a fraction of that.
    constexpr int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK;
    const int file = ::open(m_path.constData(), flags, 0666);
    if (file >= 0 || errno != ENOENT || m_path.isEmpty())
        return file;
    QDir().mkpath(QFileInfo(QFile::decodeName(m_path)).path());
    return ::open(m_path.constData(), flags, 0666);
}

/// Writes the records from the first that changed, piece by piece, and cuts the file to length.
bool CatalogFile::_save(int file, std::size_t count, std::size_t firstChanged, const RecordAt &recordAt)
{
    const bool wasEmpty = m_offsets.size() < 2;
    const std::size_t first = wasEmpty || count == 0 ? 0 : std::min(firstChanged, m_offsets.size() - 1);
    CatalogXmlWriter writer;
    if (first == 0)
        writer.append(count ? CatalogXmlWriter::head() : CatalogXmlWriter::emptyCatalog());
    off_t at = first == 0 ? 0 : m_offsets[first]; // where the writer's text goes
    m_offsets.resize(first);
    m_offsets.reserve(count + 1);
    for (std::size_t i = first; i < count; ++i) {
        m_offsets.push_back(at + static_cast<off_t>(writer.size()));
        writer.appendRecord(recordAt(i));
        if (writer.size() >= pieceSize && !writePiece(file, writer, at))
            return false;
    }
    m_offsets.push_back(at + static_cast<off_t>(writer.size()));
    if (count)
        writer.append(CatalogXmlWriter::tail());
    return writePiece(file, writer, at) && cutTo(file, at);
}

} // namespace qw
