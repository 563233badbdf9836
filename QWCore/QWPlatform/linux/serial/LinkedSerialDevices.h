#pragma once

#include "SerialDeviceSource.h"

#include <QFileSystemWatcher>

namespace platform
{

/// Serial devices that no registry knows: the links "tty.…" of a folder, such as those to pseudo-terminals of
/// simulators.
class LinkedSerialDevices : public SerialDeviceSource
{
public:
    explicit LinkedSerialDevices(QString folder);

    std::vector<SerialService> present() override;

private:
    const QString m_folder;
    QFileSystemWatcher m_watcher;
};

} // namespace platform
