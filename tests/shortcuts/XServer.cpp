#include "XServer.h"

#include <QProcess>

#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
bool run(const QString &program, const QStringList &arguments)
{
    QProcess tool;
    tool.setProcessChannelMode(QProcess::ForwardedChannels);
    tool.start(program, arguments);
    return tool.waitForFinished() && tool.exitCode() == 0;
}

/// The server writes the number of the free display that it chose.
QByteArray readLine(int descriptor)
{
    QByteArray line;
    for (char c; ::read(descriptor, &c, 1) == 1 && c != '\n';)
        line.append(c);
    return line;
}
} // namespace

XServer::XServer()
{
    int ends[2];
    if (::pipe(ends) != 0)
        return;
    m_process = ::fork();
    if (m_process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM); // it must not outlive a test that crashes
        ::close(ends[0]);
        const QByteArray descriptor = QByteArray::number(ends[1]);
        ::execlp("Xvfb", "Xvfb", "-displayfd", descriptor.constData(), "-screen", "0", "800x600x24", "-nolisten", "tcp",
                 "-noreset", nullptr);
        ::_exit(127);
    }
    ::close(ends[1]);
    m_display = readLine(ends[0]);
    ::close(ends[0]);
    if (!isRunning())
        return;
    qputenv("DISPLAY", ':' + m_display);
    qputenv("QT_QPA_PLATFORM", "xcb");
}

XServer::~XServer()
{
    if (m_process <= 0)
        return;
    ::kill(m_process, SIGTERM);
    ::waitpid(m_process, nullptr, 0);
}

bool XServer::act(const QStringList &arguments)
{
    return run("xdotool", arguments);
}

bool XServer::setLayout(const QString &layout)
{
    return run("setxkbmap", layout.split(' '));
}
