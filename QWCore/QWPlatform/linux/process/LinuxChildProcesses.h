#pragma once

#include "QWPlatform/foundation/processes/ChildProcesses.h"
#include "RunningChildren.h"

namespace platform
{

class Locations;

class LinuxChildProcesses : public ChildProcesses
{
public:
    explicit LinuxChildProcesses(const Locations &locations);

    ChildProcessResult run(const ChildProcessRequest &request) override;
    void endAll() override;

private:
    const Locations &m_locations;
    RunningChildren m_running;
};

} // namespace platform
