#include "LinuxWorkspace.h"

#include "DesktopPrograms.h"
#include "QWPlatform/System.h"
#include "QWPlatform/appkit/Selector.h"
#include "QWPlatform/appkit/windows/UnopenedAlert.h"
#include "QWPlatform/foundation/Clock.h"

#include <QCoreApplication>
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

void didEnd(QProcess *opener, const QString &what, bool hasFailed)
{
    openers().remove(opener);
    opener->deleteLater();
    if (hasFailed)
        UnopenedAlert::sharedInstance().tell(what);
}

/// A program that lives on by itself and was given @p what, as an alert would call it.
bool start(const QString &program, const QStringList &arguments, const QString &what)
{
    auto *const process = new QProcess;
    openers().insert(process);
    process->setChildProcessModifier([] { ::setsid(); });
    process->setWorkingDirectory(QDir::homePath());
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QObject::connect(process, &QProcess::finished, process,
                     [process, what, start = now()](int code, QProcess::ExitStatus status) {
                         const bool hasFailed = status == QProcess::NormalExit && code != 0;
                         didEnd(process, what, hasFailed && now() - start < longestOpening);
                     });
    process->start(program, arguments);
    const bool hasStarted = process->waitForStarted();
    if (!hasStarted)
        didEnd(process, what, false);
    return hasStarted;
}

// QDesktopServices is not used: it does nothing on window systems whose Qt plug-in lacks services.
bool startOpener(const QUrl &url)
{
    const QString opener = QStandardPaths::findExecutable("xdg-open");
    return !opener.isEmpty() &&
           start(opener, {url.toString(QUrl::FullyEncoded)}, url.toDisplayString(QUrl::PreferLocalFile));
}

bool startProgram(const QString &name, const QString &path)
{
    const QStringList command = commandOfProgram(name, path);
    const QString program = QStandardPaths::findExecutable(command.value(0));
    return !program.isEmpty() && start(program, command.mid(1), path);
}

bool isNameOfThisApplication(const QString &name)
{
    QObject *const application = QCoreApplication::instance();
    return name == QCoreApplication::applicationName() || name == performReturning<QString>(application, "name");
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

bool LinuxWorkspace::openFileWithApplication(const QString &path, const QString &applicationName)
{
    const QFileInfo file(path);
    if (!file.exists() || applicationName.isEmpty())
        return false;
    if (!isNameOfThisApplication(applicationName))
        return startProgram(applicationName, file.absoluteFilePath());
    return performReturning<bool>(QCoreApplication::instance(), "openFile:", file.absoluteFilePath()).value_or(false);
}

} // namespace platform
