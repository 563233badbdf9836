// "qw-lv2-reader": reads LV2 bundles for the component registry, so that a malformed one ends this process instead of a
// host. Arguments: the limits, then the bundles. See Lv2Reply.h for what it prints.
#include "Lv2BundleReader.h"
#include "Lv2ReaderLimits.h"
#include "Lv2Reply.h"

#include <QFile>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

using namespace platform;

namespace
{
constexpr rlim_t largestComplaint = 65536; // bytes that the host library may print about all bundles
constexpr qsizetype toldOfComplaint = 300;

void limit(__rlimit_resource resource, rlim_t value)
{
    rlimit current{};
    ::getrlimit(resource, &current);
    const rlimit wanted{std::min(value, current.rlim_max), std::min(value, current.rlim_max)};
    ::setrlimit(resource, &wanted);
}

void limitProcess(int megabytes)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_DUMPABLE, 0); // dumps that are piped to a program do not heed the limit
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, largestComplaint);
    std::signal(SIGXFSZ, SIG_IGN);
    if (QW_LIMITS_MEMORY)
        limit(RLIMIT_AS, static_cast<rlim_t>(megabytes) << 20);
}

/// Ends the process when it stands still for as long as the alarm was set for. On a busy machine a bundle may take
/// long; what counts is that it moves.
class Patience
{
public:
    static void begin(int seconds)
    {
        s_seconds = static_cast<unsigned>(seconds);
        s_work = _workSoFar();
        std::signal(SIGALRM, _look);
        ::alarm(s_seconds);
    }

private:
    static double _workSoFar()
    {
        timespec time{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    static void _look(int)
    {
        constexpr double leastWork = 0.001; // seconds
        const double work = _workSoFar();
        if (work - s_work < leastWork) {
            std::signal(SIGALRM, SIG_DFL);
            ::raise(SIGALRM); // comes when this returns
        }
        s_work = work;
        ::alarm(s_seconds);
    }

    static inline unsigned s_seconds = 0;
    static inline double s_work = 0; ///< When last looked at, in seconds.
};

/// The signals of both clocks end the process.
void limitTime(int workSeconds, int patienceSeconds)
{
    const itimerval work{{0, 0}, {workSeconds, 0}};
    ::setitimer(ITIMER_PROF, &work, nullptr);
    Patience::begin(patienceSeconds);
}

/// What is printed from now on, on standard output too, goes into a file without a name.
class Complaints
{
public:
    Complaints()
        : m_file(::memfd_create("complaints", MFD_CLOEXEC))
    {
        ::dup2(m_file, STDOUT_FILENO);
        ::dup2(m_file, STDERR_FILENO);
    }

    /// The beginning of what was printed since the last call, in one line.
    QString take()
    {
        QByteArray text(toldOfComplaint, 0);
        text.truncate(std::max<ssize_t>(0, ::pread(m_file, text.data(), static_cast<std::size_t>(text.size()), 0)));
        if (::ftruncate(m_file, 0) == 0)
            ::lseek(m_file, 0, SEEK_SET);
        return QString::fromUtf8(text).simplified();
    }

private:
    int m_file;
};

void print(int output, const QByteArray &bytes)
{
    for (qsizetype at = 0; at < bytes.size();) {
        const ssize_t count = ::write(output, bytes.constData() + at, static_cast<std::size_t>(bytes.size() - at));
        if (count < 0)
            std::_Exit(1); // nobody listens
        at += count;
    }
}
} // namespace

int main(int argc, char **argv)
{
    if (argc <= Lv2ReaderLimits::argumentCount) {
        std::fprintf(stderr, "Usage: %s MEGABYTES WORK-SECONDS PATIENCE-SECONDS BUNDLE...\n", argv[0]);
        return 2;
    }
    const int output = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    Complaints complaints;
    limitProcess(std::atoi(argv[1]));
    print(output, Lv2Reply::greeting());
    for (int i = 1 + Lv2ReaderLimits::argumentCount; i < argc; ++i) {
        limitTime(std::atoi(argv[2]), std::atoi(argv[3]));
        Lv2BundleContents contents{readLv2Bundle(QFile::decodeName(argv[i])), {}};
        contents.complaint = complaints.take();
        print(output, Lv2Reply::answer(contents));
    }
    std::_Exit(0); // nothing that the host library tears down can spoil what was said
}
