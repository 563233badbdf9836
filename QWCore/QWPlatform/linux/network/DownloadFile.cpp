#include "DownloadFile.h"

#include "NumberedName.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform
{

namespace
{
constexpr mode_t modeBeforeMask = 0666;
constexpr qsizetype usualLongestName = 255; ///< Bytes. FAT tells more, and takes as many of its own units.
constexpr int mostAttempts = 100;           ///< At a name that somebody else takes each time.

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

std::error_code errorOf(int number)
{
    return {number, std::generic_category()};
}

std::error_code resultOf(int returned)
{
    return returned == 0 ? std::error_code() : lastError();
}

bool isUnknownToDisk(const std::error_code &error)
{
    return error == errorOf(EINVAL) || error == errorOf(ENOSYS) || error == errorOf(EOPNOTSUPP);
}

QByteArray pathOfDescriptor(int descriptor)
{
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

int openNameless(const QByteArray &folder)
{
    const int descriptor = ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, modeBeforeMask);
    if (descriptor < 0 || ::access(pathOfDescriptor(descriptor).constData(), F_OK) == 0)
        return descriptor;
    ::close(descriptor); // without /proc it could never be given a name
    return -1;
}

qsizetype longestNameIn(const QByteArray &folder)
{
    const long most = ::pathconf(folder.constData(), _PC_NAME_MAX);
    return most > 0 ? std::min<qsizetype>(most, usualLongestName) : usualLongestName;
}
} // namespace

DownloadFile::DownloadFile(QString destination, bool overwrite)
    : DownloadFile(std::move(destination), overwrite, Means{})
{
}

DownloadFile::DownloadFile(QString destination, bool overwrite, Means means)
    : m_folder(QFileInfo(destination).path())
    , m_name(QFileInfo(destination).fileName())
    , m_overwrite(overwrite)
    , m_means(means)
    , m_path(std::move(destination))
{
}

DownloadFile::~DownloadFile()
{
    _close();
    if (!m_hidden.isEmpty())
        ::unlink(m_hidden.constData());
}

std::error_code DownloadFile::open()
{
    if (m_name.isEmpty() || m_path.contains(QChar::Null))
        return errorOf(EINVAL);
    if (m_overwrite && QFileInfo(m_path).isDir())
        return errorOf(EISDIR);
    const QByteArray folder = QFile::encodeName(m_folder);
    m_longestName = longestNameIn(folder);
    m_descriptor = m_means.nameless ? openNameless(folder) : -1;
    return m_descriptor >= 0 ? std::error_code() : _openHidden();
}

/// Its name holds that of the file: what the disk does not allow in names shows at once.
std::error_code DownloadFile::_openHidden()
{
    std::error_code error = errorOf(EEXIST);
    for (int attempt = 0; attempt < mostAttempts && error == errorOf(EEXIST); ++attempt) {
        const QString end = QString(".%1.part").arg(QRandomGenerator::global()->generate(), 8, 16, QChar(u'0'));
        const QString name = '.' + numberedName(m_name, 1, m_longestName - 1 - end.size()) + end;
        const QByteArray path = QFile::encodeName(m_folder + '/' + name);
        m_descriptor = ::open(path.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, modeBeforeMask);
        error = m_descriptor < 0 ? lastError() : std::error_code();
        m_hidden = m_descriptor < 0 ? QByteArray() : path;
    }
    return error;
}

std::error_code DownloadFile::write(const QByteArray &data)
{
    for (qsizetype written = 0; written < data.size();) {
        const ssize_t more =
            ::write(m_descriptor, data.constData() + written, static_cast<size_t>(data.size() - written));
        if (more < 0 && errno != EINTR)
            return lastError();
        written += std::max<ssize_t>(more, 0);
    }
    return {};
}

std::error_code DownloadFile::clear()
{
    return ::lseek(m_descriptor, 0, SEEK_SET) < 0 ? lastError() : resultOf(::ftruncate(m_descriptor, 0));
}

std::error_code DownloadFile::place()
{
    std::error_code error = errorOf(EEXIST);
    QByteArray path;
    qint64 number = 1;
    for (int attempt = 0; attempt < mostAttempts && error == errorOf(EEXIST); ++attempt) {
        number = attempt == 0 ? number : _freeNumber(number);
        path = _candidate(number);
        error = _giveName(path);
    }
    if (error)
        return error;
    if (path != QFile::encodeName(m_folder + '/' + m_name))
        m_path = QFile::decodeName(path);
    m_hidden.clear();
    _close();
    return {};
}

QByteArray DownloadFile::_candidate(qint64 number) const
{
    const QString name = m_overwrite ? m_name : numberedName(m_name, number, m_longestName);
    return QFile::encodeName(m_folder + '/' + name);
}

/// In steps that double, then by halves: a thousand names that are taken cost twenty looks.
qint64 DownloadFile::_freeNumber(qint64 taken) const
{
    qint64 step = 1;
    for (; _isTaken(taken + step); step *= 2)
        taken += step;
    for (qint64 free = taken + step; free - taken > 1;) {
        const qint64 middle = taken + (free - taken) / 2;
        (_isTaken(middle) ? taken : free) = middle;
    }
    return taken + 1;
}

bool DownloadFile::_isTaken(qint64 number) const
{
    struct stat found = {};
    return ::lstat(_candidate(number).constData(), &found) == 0;
}

std::error_code DownloadFile::_giveName(const QByteArray &path)
{
    return m_hidden.isEmpty() ? _linkNameless(path) : _renameHidden(path);
}

std::error_code DownloadFile::_linkNameless(const QByteArray &path)
{
    const std::error_code error = resultOf(
        ::linkat(AT_FDCWD, pathOfDescriptor(m_descriptor).constData(), AT_FDCWD, path.constData(), AT_SYMLINK_FOLLOW));
    return error == errorOf(EEXIST) && m_overwrite ? _replaceByLink(path) : error;
}

/// A link replaces nothing, a rename does.
std::error_code DownloadFile::_replaceByLink(const QByteArray &path)
{
    const QString name = QString(".%1.part").arg(QRandomGenerator::global()->generate64(), 16, 16, QChar(u'0'));
    m_hidden = QFile::encodeName(m_folder + '/' + name);
    const std::error_code error = resultOf(::linkat(AT_FDCWD, pathOfDescriptor(m_descriptor).constData(), AT_FDCWD,
                                                    m_hidden.constData(), AT_SYMLINK_FOLLOW));
    if (error)
        m_hidden.clear();
    return error ? error : resultOf(::rename(m_hidden.constData(), path.constData()));
}

std::error_code DownloadFile::_renameHidden(const QByteArray &path)
{
    if (m_overwrite)
        return resultOf(::rename(m_hidden.constData(), path.constData()));
    const std::error_code error =
        m_means.exclusiveRename
            ? resultOf(::renameat2(AT_FDCWD, m_hidden.constData(), AT_FDCWD, path.constData(), RENAME_NOREPLACE))
            : errorOf(EINVAL);
    if (!isUnknownToDisk(error))
        return error;
    const std::error_code linked =
        m_means.links ? resultOf(::link(m_hidden.constData(), path.constData())) : errorOf(EPERM);
    if (linked && linked != errorOf(EEXIST))
        return _renameOverReservation(path);
    if (!linked)
        ::unlink(m_hidden.constData());
    return linked;
}

/// For disks that know nothing better (network shares, phones): an empty file, which nobody else can have made, takes
/// the name before this one does.
std::error_code DownloadFile::_renameOverReservation(const QByteArray &path)
{
    const int reservation = ::open(path.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, modeBeforeMask);
    if (reservation < 0)
        return lastError();
    ::close(reservation);
    const std::error_code error = resultOf(::rename(m_hidden.constData(), path.constData()));
    if (error)
        ::unlink(path.constData());
    return error;
}

void DownloadFile::_close()
{
    if (const int descriptor = std::exchange(m_descriptor, -1); descriptor >= 0)
        ::close(descriptor);
}

} // namespace platform
