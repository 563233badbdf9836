#include "LockFile.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cstdio>
#include <sys/stat.h>
#include <tuple>

namespace platform
{

namespace
{
constexpr int pause = 2;                  ///< Milliseconds between two attempts: the others hold it about as long.
constexpr int usualStaleTime = 30'000;    ///< Milliseconds after which a lock of whoever is told in it counts as left.
constexpr int unreadableStaleTime = 1000; ///< The same for a lock that tells nobody.

/// What changes when the lock goes from one program to the next.
using Holder = std::tuple<ino_t, time_t, long>;

std::optional<struct stat> statusOf(const QString &path)
{
    struct stat status;
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? std::optional(status) : std::nullopt;
}

Holder holderOf(const QString &path)
{
    const auto status = statusOf(path);
    return status ? Holder(status->st_ino, status->st_mtim.tv_sec, status->st_mtim.tv_nsec) : Holder();
}
} // namespace

QString movedAside(const QString &path)
{
    QString target = path + u".unreadable";
    for (int number = 2; QFileInfo::exists(target); ++number)
        target = path + u".unreadable " + QString::number(number);
    const bool moved = std::rename(QFile::encodeName(path).constData(), QFile::encodeName(target).constData()) == 0;
    return moved ? target : QString();
}

LockFile::LockFile(const QString &path)
    : m_path(path)
    , m_lock(path)
{
}

bool LockFile::acquire(Patience patience, const std::atomic<bool> *hurry)
{
    QDeadlineTimer altogether(patience.altogether);
    QDeadlineTimer withOne(patience.withOne);
    Holder holder = holderOf(m_path);
    while (_clearPlace() && !m_lock.tryLock(0)) {
        _judgeHolder();
        if (const Holder now = holderOf(m_path); now != holder) {
            holder = now;
            withOne.setRemainingTime(patience.withOne);
        }
        const bool isOver = withOne.hasExpired() || altogether.hasExpired() || (hurry && *hurry);
        if (isOver || !isHeldByOthers())
            return false;
        QThread::msleep(pause); // QLockFile itself pauses ever longer, so that a busy neighbour would starve us
    }
    return m_lock.isLocked();
}

/// False when something other than a file is there and stays.
bool LockFile::_clearPlace() const
{
    const auto status = statusOf(m_path);
    if (!status || S_ISREG(status->st_mode))
        return true;
    const QString target = movedAside(m_path);
    if (!target.isEmpty())
        qWarning("What was in the place of the lock \"%s\" is kept as \"%s\".", qUtf8Printable(m_path),
                 qUtf8Printable(target));
    return !target.isEmpty();
}

void LockFile::_judgeHolder()
{
    qint64 process = 0;
    QString machine;
    QString program;
    const bool isTold = m_lock.getLockInfo(&process, &machine, &program);
    m_lock.setStaleLockTime(isTold ? usualStaleTime : unreadableStaleTime);
}

} // namespace platform
