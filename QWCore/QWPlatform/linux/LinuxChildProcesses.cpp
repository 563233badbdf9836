#include "LinuxChildProcesses.h"

#include "../foundation/Locations.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace platform
{

namespace
{
/// Text that the child gets as a null-terminated vector of C strings.
class CStrings
{
public:
    void append(QByteArray text) { m_texts.push_back(std::move(text)); }

    char *const *data()
    {
        m_pointers.clear();
        for (QByteArray &text : m_texts)
            m_pointers.push_back(text.data());
        m_pointers.push_back(nullptr);
        return m_pointers.data();
    }

private:
    std::vector<QByteArray> m_texts;
    std::vector<char *> m_pointers;
};

CStrings argumentsOf(const ChildProcessRequest &request)
{
    CStrings arguments;
    arguments.append(QFile::encodeName(request.launchPath));
    for (const QString &argument : request.arguments)
        arguments.append(QFile::encodeName(argument));
    return arguments;
}

CStrings environmentOf(const Locations &locations)
{
    CStrings environment;
    for (char **entry = environ; *entry; ++entry)
        if (qstrncmp(*entry, "HOME=", 5) != 0 && qstrncmp(*entry, "QW_LIBRARY_ROOT=", 16) != 0)
            environment.append(*entry);
    environment.append("HOME=" + QFile::encodeName(locations.home()));
    environment.append("QW_LIBRARY_ROOT=" + QFile::encodeName(locations.libraryRoot()));
    return environment;
}

/// A child that stops itself would hold the caller for ever, its own watchdog with it.
void endIfStopped(pid_t child)
{
    siginfo_t stopped = {};
    if (::waitid(P_PID, static_cast<id_t>(child), &stopped, WSTOPPED | WNOHANG) == 0 && stopped.si_pid == child)
        ::kill(child, SIGKILL);
}

/// A pipe whose read end is the parent's; both ends close at exec.
class Pipe
{
public:
    explicit Pipe(bool wanted)
    {
        if (wanted && ::pipe2(m_ends.data(), O_CLOEXEC) != 0)
            m_ends = {-1, -1};
    }

    ~Pipe()
    {
        close(0);
        close(1);
    }

    int writeEnd() const { return m_ends[1]; }
    void closeWriteEnd() { close(1); }

    /// What @p child writes, until it has closed its end.
    QByteArray readAll(pid_t child) const
    {
        QByteArray output;
        char buffer[16384];
        for (;;) {
            _awaitOutput(child);
            const ssize_t count = m_ends[0] < 0 ? 0 : ::read(m_ends[0], buffer, sizeof buffer);
            if (count > 0)
                output.append(buffer, count);
            else if (count == 0 || errno != EINTR)
                return output;
        }
    }

private:
    void _awaitOutput(pid_t child) const
    {
        constexpr int milliseconds = 100;
        pollfd readable{m_ends[0], POLLIN, 0};
        while (m_ends[0] >= 0 && ::poll(&readable, 1, milliseconds) == 0)
            endIfStopped(child);
    }

    void close(int end)
    {
        if (m_ends[end] >= 0)
            ::close(m_ends[end]);
        m_ends[end] = -1;
    }

    std::array<int, 2> m_ends{-1, -1};
};

/// posix_spawn shares the parent's memory until exec, so that its cost does not grow with the host.
class Spawn
{
public:
    Spawn()
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
        sigset_t none;
        sigset_t defaults;
        sigemptyset(&none);
        sigfillset(&defaults);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &defaults);
        // In a session of its own: a program that asks the terminal, as for an archive's password, would wait for ever.
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }

    ~Spawn()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    Spawn(const Spawn &) = delete;
    Spawn &operator=(const Spawn &) = delete;

    void redirectOutput(int descriptor)
    {
        if (descriptor >= 0)
            posix_spawn_file_actions_adddup2(&m_actions, descriptor, STDOUT_FILENO);
    }

    /// The child's id, or -1.
    pid_t start(CStrings arguments, CStrings environment)
    {
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1); // after the redirection
        char *const *argv = arguments.data();
        pid_t child = -1;
        return ::posix_spawn(&child, argv[0], &m_actions, &m_attributes, argv, environment.data()) == 0 ? child : -1;
    }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

// A child that stops itself is ended and counts as crashed.
void await(pid_t child, ChildProcessResult &result)
{
    int status = 0;
    pid_t ended = -1;
    do {
        ended = ::waitpid(child, &status, WUNTRACED);
        if (ended == child && WIFSTOPPED(status))
            ::kill(child, SIGKILL);
    } while (ended < 0 ? errno == EINTR : WIFSTOPPED(status));
    result.exited = ended == child && WIFEXITED(status);
    result.status = result.exited ? WEXITSTATUS(status) : WTERMSIG(status);
}
} // namespace

LinuxChildProcesses::LinuxChildProcesses(const Locations &locations)
    : m_locations(locations)
{
}

ChildProcessResult LinuxChildProcesses::run(const ChildProcessRequest &request)
{
    Pipe output(request.captureOutput);
    Spawn spawn;
    spawn.redirectOutput(output.writeEnd());
    const pid_t child = spawn.start(argumentsOf(request), environmentOf(m_locations));
    output.closeWriteEnd();
    ChildProcessResult result;
    if (child < 0)
        return result;
    result.started = true;
    result.output = output.readAll(child);
    await(child, result);
    return result;
}

} // namespace platform
