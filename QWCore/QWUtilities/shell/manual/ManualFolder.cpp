#include "ManualFolder.h"

#include "QWUtilities/shell/QWManual.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWError.h>
#include <QWBase/QWFile.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/processes/ChildProcesses.h>
#include <QWPlatform/machine/SystemServices.h>

using platform::System;
using platform::SystemServices;

namespace qw
{

namespace
{
QString mapped(const QString &path)
{
    return System::current().locations().mapped(path);
}
} // namespace

bool ManualFolder::prepare()
{
    QWError error;
    m_manualPath = QWApplication::sharedApplication()->supportDirectory() + "/Manual";
    if (!QWFile::createDirectoryAtPath(m_manualPath, &error)) {
        error.alert();
        return false;
    }
    m_manualIndexPath = m_manualPath + "/index.html";
    if (QWFile::fileExistsAtPath(m_manualIndexPath))
        return true;
    if (!empty(&error)) {
        error.alert();
        return false;
    }
    if (QWManual::appUsesQWManual())
        unzip(System::current().mainBundle().pathForResource("Manual", "zip"));
    return true;
}

QUrl ManualFolder::indexUrl() const
{
    return QUrl::fromLocalFile(mapped(m_manualIndexPath));
}

QUrl ManualFolder::acknowledgementsUrl() const
{
    return QUrl::fromLocalFile(mapped(m_manualPath + "/acknowledgements.html"));
}

bool ManualFolder::empty(QWError *error) const
{
    QWFile::makeAccessibleAtPath(m_manualPath);
    return QWFile::emptyDirectoryAtPath(m_manualPath, error);
}

/// unzip:toDirectory:
void ManualFolder::unzip(const QString &archive) const
{
    SystemServices::current().childProcesses->run(
        {.launchPath = "/usr/bin/unzip", .arguments = {"-q", mapped(archive), "-d", mapped(m_manualPath)}});
    QWFile::makeAccessibleAtPath(m_manualPath); // what an archive forbids could be neither read nor replaced
}

} // namespace qw
