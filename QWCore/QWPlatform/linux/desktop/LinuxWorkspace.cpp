#include "LinuxWorkspace.h"

#include "QWPlatform/System.h"
#include "QWPlatform/appkit/windows/UnopenedAlert.h"
#include "QWPlatform/foundation/Clock.h"

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
constexpr qint64 longestOpening = 60'000'000'000; ///< Nanoseconds; what fails later was open before.

qint64 now()
{
    return System::current().clock().monotonicNanoseconds();
}

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
    QObject::connect(process, &QProcess::finished, process,
                     [process, url, start = now()](int code, QProcess::ExitStatus status) {
                         const bool hasFailed = status == QProcess::NormalExit && code != 0;
                         didEnd(process, url, hasFailed && now() - start < longestOpening);
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
