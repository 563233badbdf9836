#include "LinuxRemoteReceiverInterface.h"

#include "InputDevice.h"
#include "LinuxRemoteReceiverQueue.h"
#include "RemoteKeys.h"

namespace platform
{

LinuxRemoteReceiverInterface::LinuxRemoteReceiverInterface(std::shared_ptr<InputDevice> device)
    : m_device(std::move(device))
{
}

LinuxRemoteReceiverInterface::~LinuxRemoteReceiverInterface()
{
    m_device->ungrab();
}

bool LinuxRemoteReceiverInterface::openExclusively()
{
    return m_device->grab();
}

void LinuxRemoteReceiverInterface::close()
{
    m_device->ungrab();
}

std::optional<QVariantList> LinuxRemoteReceiverInterface::copyMatchingElements()
{
    QVariantList children;
    for (const quint32 cookie : RemoteKeys::cookiesOfKeys(m_device->keys().value_or(KeyBits())))
        children += QVariantMap{{"ElementCookie", qlonglong(cookie)}};
    if (children.isEmpty())
        return std::nullopt;
    return QVariantList{QVariantMap{{"Elements", children}}};
}

std::unique_ptr<HidQueue> LinuxRemoteReceiverInterface::allocateQueue()
{
    return std::make_unique<LinuxRemoteReceiverQueue>(m_device);
}

void LinuxRemoteReceiverInterface::setRemovalCallback(HidCallback callback, void *target, void *refcon)
{
    m_device->setRemovalCallback(callback, target, refcon);
}

} // namespace platform
