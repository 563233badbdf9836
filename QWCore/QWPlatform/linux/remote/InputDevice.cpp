#include "InputDevice.h"

#include <QFile>

#include <utility>

namespace platform
{

std::shared_ptr<InputDevice> InputDevice::open(std::shared_ptr<InputDeviceCalls> calls, const QString &path)
{
    const int descriptor = calls->open(QFile::encodeName(path));
    return descriptor < 0 ? nullptr : std::make_shared<InputDevice>(std::move(calls), descriptor);
}

InputDevice::InputDevice(std::shared_ptr<InputDeviceCalls> calls, int descriptor)
    : m_calls(std::move(calls))
    , m_descriptor(descriptor)
{
}

InputDevice::~InputDevice()
{
    ungrab();
    m_calls->close(m_descriptor);
}

bool InputDevice::grab()
{
    m_isGrabbed = m_isGrabbed || m_calls->grab(m_descriptor);
    return m_isGrabbed;
}

void InputDevice::ungrab()
{
    if (std::exchange(m_isGrabbed, false))
        m_calls->ungrab(m_descriptor);
}

void InputDevice::setRemovalCallback(HidCallback callback, void *target, void *refcon)
{
    m_removalCallback = callback;
    m_removalTarget = target;
    m_removalRefcon = refcon;
}

void InputDevice::removed()
{
    if (m_removalCallback)
        m_removalCallback(m_removalTarget, 0, m_removalRefcon, this);
}

} // namespace platform
