#include "LinuxChildProcesses.h"

#include "ChildOutput.h"
#include "ChildState.h"
#include "QWPlatform/foundation/Locations.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <iterator>
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
    const QByteArray own[] = {"HOME=" + QFile::encodeName(locations.home()),
                              "QW_LIBRARY_ROOT=" + QFile::encodeName(locations.libraryRoot()),
                              "QW_HOST_PROCESS=" + QByteArray::number(::getpid())};
    const auto isOwn = [&](const char *entry) {
        return std::any_of(std::begin(own), std::end(own), [&](const QByteArray &variable) {
            return qstrncmp(entry, variable.constData(), std::size_t(variable.indexOf('=')) + 1) == 0;
        });
    };
    CStrings environment;
    for (char **entry = environ; *entry; ++entry)
        if (!isOwn(*entry))
            environment.append(*entry);
    for (const QByteArray &variable : own)
        environment.append(variable);
    return environment;
}

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

    void redirect(int standard, int descriptor)
    {
        if (descriptor >= 0)
            posix_spawn_file_actions_adddup2(&m_actions, descriptor, standard);
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

/// Waits for the end of @p child and ends what it left running in its group. Its id is nobody else's until it is
/// reaped.
void awaitEndOfGroup(pid_t child)
{
    if (awaitEnd(child))
        ::kill(-child, SIGKILL);
}

void reap(pid_t child, ChildProcessResult &result)
{
    int status = 0;
    pid_t ended = -1;
    do
        ended = ::waitpid(child, &status, 0);
    while (ended < 0 && errno == EINTR);
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
    if (m_running.hasEnded())
        return {};
    ChildOutput output(request.captureOutput || request.captureErrors);
    Spawn spawn;
    if (request.captureOutput)
        spawn.redirect(STDOUT_FILENO, output.writeEnd());
    if (request.captureErrors)
        spawn.redirect(STDERR_FILENO, output.writeEnd());
    const pid_t child = spawn.start(argumentsOf(request), environmentOf(m_locations));
    output.closeWriteEnd();
    ChildProcessResult result;
    if (child < 0)
        return result;
    result.started = true;
    m_running.add(child);
    result.output = output.read(child, request.longestOutput);
    awaitEndOfGroup(child);
    m_running.remove(child);
    reap(child, result);
    return m_running.hasEnded() ? ChildProcessResult() : result;
}

void LinuxChildProcesses::endAll()
{
    m_running.endAll();
}

} // namespace platform
