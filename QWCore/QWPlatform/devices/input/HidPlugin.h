#pragma once

#include "HidInterface.h"

#include <QWPlatform/qwplatform_private.h>

namespace platform
{

/// The way to the interfaces of one HID device. What it made outlives it.
class QWPLATFORM_SHARED_EXPORT HidPlugin
{
public:
    virtual ~HidPlugin();

    virtual std::unique_ptr<HidInterface> queryInterface() = 0; ///< Null on failure.
};

} // namespace platform
