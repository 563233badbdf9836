#pragma once

#include "InputDeviceCalls.h"
#include "QWPlatform/devices/input/HidQueue.h"

namespace platform
{

/// An open input device of the kernel, closed with its last owner. One thread.
class InputDevice
{
public:
    /// Null when the device cannot be opened.
    static std::shared_ptr<InputDevice> open(std::shared_ptr<InputDeviceCalls> calls, const QString &path);

    InputDevice(std::shared_ptr<InputDeviceCalls> calls, int descriptor);
    ~InputDevice();
    InputDevice(const InputDevice &) = delete;
    InputDevice &operator=(const InputDevice &) = delete;

    bool grab();
    void ungrab(); ///< Harmless when not grabbed.

    int descriptor() const { return m_descriptor; }
    std::optional<KeyBits> keys() const { return m_calls->keys(m_descriptor); }
    std::optional<KeyBits> keysDown() const { return m_calls->keysDown(m_descriptor); }
    ssize_t read(void *buffer, size_t size) const { return m_calls->read(m_descriptor, buffer, size); }

    void setRemovalCallback(HidCallback callback, void *target, void *refcon);

    /// Tells that the device has gone; nothing when nobody asked to be told. The caller keeps an owner meanwhile.
    void removed();

private:
    const std::shared_ptr<InputDeviceCalls> m_calls;
    const int m_descriptor;
    bool m_isGrabbed = false;
    HidCallback m_removalCallback = nullptr;
    void *m_removalTarget = nullptr;
    void *m_removalRefcon = nullptr;
};

} // namespace platform
