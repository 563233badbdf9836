#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QByteArray>

#include <bitset>
#include <optional>

#include <linux/input.h>
#include <sys/types.h>

namespace platform
{

/// One bit per key code of the kernel.
using KeyBits = std::bitset<KEY_CNT>;

/// What the kernel does for an input device ("/dev/input/event5"). A test puts others in place of those that need a
/// device.
class QWPLATFORM_TEST_EXPORT InputDeviceCalls
{
public:
    virtual ~InputDeviceCalls();

    /// A descriptor that does not block; -1 on failure.
    virtual int open(const QByteArray &path);

    /// Whether the events of the device go to @p descriptor alone from now on; false when another has them.
    virtual bool grab(int descriptor);
    virtual void ungrab(int descriptor);

    virtual std::optional<KeyBits> keys(int descriptor);     ///< The keys that the device has.
    virtual std::optional<KeyBits> keysDown(int descriptor); ///< Those that are down now.

    /// As read(2).
    virtual ssize_t read(int descriptor, void *buffer, size_t size);
    virtual void close(int descriptor);
};

} // namespace platform
