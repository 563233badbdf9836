#pragma once

#include "../foundation/ChildProcesses.h"

namespace platform
{

class Locations;

class LinuxChildProcesses : public ChildProcesses
{
public:
    explicit LinuxChildProcesses(const Locations &locations);

    ChildProcessResult run(const ChildProcessRequest &request) override;

private:
    const Locations &m_locations;
};

} // namespace platform
