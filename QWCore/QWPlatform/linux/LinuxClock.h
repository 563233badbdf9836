#pragma once

#include "../foundation/Clock.h"

namespace platform
{

class LinuxClock : public Clock
{
public:
    QDateTime now() const override;
    qint64 monotonicNanoseconds() const override;
};

} // namespace platform
