#include "VstOwnName.h"

#include <QWPlatform/System.h>
#include <QWPlatform/foundation/processes/ChildProcesses.h>
#include <QWPlatform/plugins/AudioPlugin.h>
#include <QWPlatform/plugins/PluginLoader.h>

#include <QFileInfo>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace VstOwnName
{

namespace
{
constexpr std::chrono::seconds patience(20);

/// From a thread: a plug-in may take the alarm clock for itself.
void endInTime()
{
    std::thread([] {
        std::this_thread::sleep_for(patience);
        std::_Exit(EXIT_FAILURE);
    }).detach();
}

/// No display, no core dump, and an end. What the plug-in prints is nobody's concern; where the name goes, or -1.
int isolate()
{
    const int output = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDOUT_FILENO);
    ::dup2(nowhere, STDERR_FILENO);
    for (const char *display : {"DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "XAUTHORITY"})
        ::unsetenv(display);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    endInTime();
    return output;
}
} // namespace

QString ask(platform::ChildProcesses &processes, const QString &program, const QString &library)
{
    platform::ChildProcessRequest request;
    request.launchPath = program;
    request.arguments = {option, library};
    request.captureOutput = true;
    return QString::fromUtf8(processes.run(request).output);
}

void print(const QString &library)
{
    const int output = isolate();
    QString error;
    const auto plugin = platform::System::current().pluginLoader().openVST(library, &error);
    const QString name = plugin ? plugin->name() : QString();
    const QByteArray text = name == QFileInfo(library).completeBaseName() ? QByteArray() : name.toUtf8();
    const ssize_t written = ::write(output, text.constData(), static_cast<std::size_t>(text.size()));
    std::_Exit(written == text.size() ? EXIT_SUCCESS : EXIT_FAILURE);
}

} // namespace VstOwnName
