#include "LinkedSerialDevices.h"

#include <QDir>

namespace platform
{

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
            services.push_back({.key = link.filePath() + " to " + link.symLinkTarget(),
                                .dialInDevice = link.filePath(),
                                .advice = {}});
    return services;
}

} // namespace platform
