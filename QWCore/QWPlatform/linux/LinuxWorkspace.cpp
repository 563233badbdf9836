#include "LinuxWorkspace.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace platform
{

namespace
{
// QDesktopServices is not used: it does nothing on window systems whose Qt plug-in lacks services.
bool startOpener(const QUrl &url)
{
    const QString opener = QStandardPaths::findExecutable("xdg-open");
    if (opener.isEmpty())
        return false;
    QProcess process;
    process.setProgram(opener);
    process.setArguments({url.toString(QUrl::FullyEncoded)});
    process.setWorkingDirectory(QDir::homePath());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    return process.startDetached();
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
