#pragma once

#include "QWPlatform/foundation/Clock.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

class QWPLATFORM_TEST_EXPORT LinuxClock : public Clock
{
public:
    QDateTime now() const override;
    qint64 monotonicNanoseconds() const override;
    void sleep(std::chrono::nanoseconds time, std::stop_token stop) override;
};

} // namespace platform
