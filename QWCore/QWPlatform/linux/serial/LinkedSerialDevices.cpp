#include "LinkedSerialDevices.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace platform
{

namespace
{
/// Another one each time that the link is made, also when it leads where one before it led: the numbers of
/// pseudo-terminals are given again.
QString keyOf(const QString &link)
{
    struct stat state
    {
    };
    ::lstat(QFile::encodeName(link).constData(), &state);
    return link + ' ' + QString::number(state.st_ino) + ' ' + QString::number(state.st_ctim.tv_sec) + '.' +
           QString::number(state.st_ctim.tv_nsec);
}
} // namespace

LinkedSerialDevices::LinkedSerialDevices(QString folder)
    : m_folder(std::move(folder))
{
    QDir().mkpath(m_folder);
    m_watcher.addPath(m_folder);
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, [this] {
        if (changed)
            changed();
    });
}

std::vector<SerialService> LinkedSerialDevices::present()
{
    std::vector<SerialService> services;
    for (const QFileInfo &link : QDir(m_folder).entryInfoList({"tty.*"}, QDir::AllEntries | QDir::System))
        if (link.isSymLink() && link.exists())
            services.push_back({.key = keyOf(link.filePath()), .dialInDevice = link.filePath(), .advice = {}});
    return services;
}

} // namespace platform
