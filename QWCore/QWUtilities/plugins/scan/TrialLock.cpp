#include "TrialLock.h"

#include <QWPlatform/foundation/Clock.h>

#include <QFile>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qw
{

namespace
{
using namespace std::chrono_literals;

constexpr auto pollTime = 2ms; ///< A holder that goes on to its next plug-in lets go for about as long.

/// Longer than a trial takes whose plug-in hangs, and hangs again.
constexpr auto patience = std::chrono::nanoseconds(2min);

int openLock(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    return file >= 0 ? file : ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // left by another user
}

/// Changes whenever someone takes the lock.
std::chrono::nanoseconds stampOf(int file)
{
    struct stat status = {};
    ::fstat(file, &status);
    return std::chrono::seconds(status.st_mtim.tv_sec) + std::chrono::nanoseconds(status.st_mtim.tv_nsec);
}
} // namespace

TrialLock::TrialLock(const QString &path, platform::Clock &clock)
    : m_file(openLock(QFile::encodeName(path)))
{
    if (m_file >= 0)
        m_isHeldByAnother = !_take(clock);
}

TrialLock::~TrialLock()
{
    if (m_file >= 0)
        ::close(m_file);
}

bool TrialLock::_take(platform::Clock &clock) const
{
    auto stamp = stampOf(m_file);
    qint64 deadline = clock.monotonicNanoseconds() + patience.count();
    while (::flock(m_file, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return true;
        if (const auto now = stampOf(m_file); now != stamp) {
            stamp = now;
            deadline = clock.monotonicNanoseconds() + patience.count();
        }
        if (clock.monotonicNanoseconds() >= deadline)
            return false;
        clock.sleep(pollTime);
    }
    ::futimens(m_file, nullptr);
    return true;
}

} // namespace qw
