#include "InstanceFolder.h"

#include "QWFileTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qw
{

namespace
{
constexpr auto randomPart = ".XXXXXX";
constexpr int attempts = 16;

int openedFolder(const QByteArray &path)
{
    return ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// Nobody holds it, or holding is unknown to this disk.
bool hold(int folder)
{
    return ::flock(folder, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

struct stat statusOf(int file)
{
    struct stat status
    {
    };
    if (::fstat(file, &status) != 0)
        status = {};
    return status;
}

void removeIfDead(const QByteArray &path)
{
    const int folder = openedFolder(path);
    if (folder < 0)
        return;
    if (statusOf(folder).st_uid == ::geteuid() && ::flock(folder, LOCK_EX | LOCK_NB) == 0) {
        makeTreeAccessible(path.toStdString());
        removeTree(path.toStdString()); // while it is held: an instance that is just making it sees that it lost it
    }
    ::close(folder);
}
} // namespace

InstanceFolder::InstanceFolder(const QString &base)
{
    if (QDir::isRelativePath(base)) {
        m_failure = std::make_error_code(std::errc::no_such_file_or_directory);
        return;
    }
    for (int attempt = 0; attempt < attempts; ++attempt)
        if (_make(base))
            return;
}

InstanceFolder::~InstanceFolder()
{
    if (m_lock < 0)
        return;
    makeTreeAccessible(QFile::encodeName(m_path).toStdString());
    removeTree(QFile::encodeName(m_path).toStdString());
    ::close(m_lock);
}

/// False when a cleaning instance was quicker than the lock.
bool InstanceFolder::_make(const QString &base)
{
    QByteArray path = QFile::encodeName(base) + randomPart;
    if (!::mkdtemp(path.data())) {
        m_failure = {errno, std::generic_category()};
        return true;
    }
    const int folder = openedFolder(path);
    if (folder < 0)
        return false;
    if (!hold(folder) || statusOf(folder).st_nlink == 0) {
        ::close(folder);
        return false;
    }
    m_lock = folder;
    m_path = QFile::decodeName(path);
    return true;
}

void InstanceFolder::removeDead(const QString &base)
{
    if (QDir::isRelativePath(base))
        return;
    const QFileInfo info(base);
    const QString pattern = info.fileName() + '.';
    const auto length = pattern.size() + 6;
    const QStringList names = QDir(info.path()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : names)
        if (name.startsWith(pattern) && name.size() == length)
            removeIfDead(QFile::encodeName(info.path() + '/' + name));
}

} // namespace qw
