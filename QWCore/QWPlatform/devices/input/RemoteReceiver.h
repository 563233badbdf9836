#pragma once

#include "HidPlugin.h"

#include <QWPlatform/qwplatform_private.h>

#include <QString>

namespace platform
{

/// Where the computer's infrared receiver is found. Main thread.
class QWPLATFORM_SHARED_EXPORT RemoteReceiver
{
public:
    virtual ~RemoteReceiver();

    /// Names the first device of @p className ("AppleIRController"); none when there is none.
    virtual std::optional<QString> firstServiceMatching(const QString &className) = 0;

    /// Null when the device cannot be reached, which on Linux mostly means that the user may not open it.
    virtual std::unique_ptr<HidPlugin> createPlugin(const QString &service) = 0;
};

} // namespace platform
