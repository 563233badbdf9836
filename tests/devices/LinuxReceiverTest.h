#pragma once

#include "ReceiverFolder.h"
#include "SocketReceiver.h"
#include "controllers/RemoteControlTest.h"

#include <QWPlatform/linux/remote/LinuxRemoteReceiver.h>

#include <QTest>

/// The remote control over the real classes: folders stand for "/sys" and "/dev", a socket for the kernel's device.
/// Whatever a test does, no descriptor stays open.
class LinuxReceiverTest : public RemoteControlTest
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        RemoteControlTest::init();
        m_folder = std::make_unique<ReceiverFolder>();
    }

    void cleanup()
    {
        RemoteControlTest::cleanup();
        QVERIFY(!m_device || m_device->openDescriptors == 0);
        m_device.reset();
        m_folder.reset();
    }

protected:
    /// From now on the machine has a receiver, which is a socket.
    void plugIn(int socketType = SOCK_SEQPACKET)
    {
        m_folder->addReceiver(5);
        m_device = std::make_shared<SocketReceiver>(socketType);
        receiver().real = std::make_unique<platform::LinuxRemoteReceiver>(m_folder->sys(), m_folder->dev(), m_device);
    }

    /// What lies in the folders is opened for real.
    void useRealCalls()
    {
        receiver().real = std::make_unique<platform::LinuxRemoteReceiver>(m_folder->sys(), m_folder->dev());
    }

    std::unique_ptr<ReceiverFolder> m_folder;
    std::shared_ptr<SocketReceiver> m_device;
};
