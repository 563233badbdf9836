#include "LinuxWorkspace.h"

#include "../appkit/UnopenedAlert.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QUrl>

#include <unistd.h>

namespace platform
{

namespace
{
/// A browser may run as the opener itself, for hours. Destroyed, its process object would take the browser along, so
/// that those which still run are kept past the end of this application.
QSet<QProcess *> &openers()
{
    static auto &running = *new QSet<QProcess *>;
    return running;
}

void didEnd(QProcess *opener, const QUrl &url, bool hasFailed)
{
    openers().remove(opener);
    opener->deleteLater();
    if (hasFailed)
        UnopenedAlert::sharedInstance().tell(url.toDisplayString(QUrl::PreferLocalFile));
}

// QDesktopServices is not used: it does nothing on window systems whose Qt plug-in lacks services.
bool startOpener(const QUrl &url)
{
    const QString opener = QStandardPaths::findExecutable("xdg-open");
    if (opener.isEmpty())
        return false;
    auto *const process = new QProcess;
    openers().insert(process);
    process->setChildProcessModifier([] { ::setsid(); });
    process->setWorkingDirectory(QDir::homePath());
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QObject::connect(process, &QProcess::finished, process, [process, url](int code, QProcess::ExitStatus status) {
        didEnd(process, url, status == QProcess::NormalExit && code != 0);
    });
    process->start(opener, {url.toString(QUrl::FullyEncoded)});
    const bool hasStarted = process->waitForStarted();
    if (!hasStarted)
        didEnd(process, url, false);
    return hasStarted;
}
} // namespace

bool LinuxWorkspace::openUrl(const QUrl &url)
{
    return url.isValid() && !url.isRelative() && startOpener(url);
}

bool LinuxWorkspace::openFile(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() && startOpener(QUrl::fromLocalFile(file.absoluteFilePath()));
}

} // namespace platform
