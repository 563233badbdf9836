#pragma once

#include "RemoteListener.h"
#include "fakes/FakeSystem.h"

#include <QObject>

#include <memory>

/// Before each test function: a fake machine of its own, whose remote control nobody has asked for yet.
class RemoteControlTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        m_system = std::make_unique<FakeSystem>();
        m_scope = std::make_unique<platform::SystemScope>(*m_system);
    }

    void cleanup()
    {
        m_scope.reset();
        m_system.reset();
    }

protected:
    FakeRemoteReceiver &receiver() { return m_system->remoteReceiver; }
    static QWRemoteControl &remote() { return QWRemoteControl::remoteControl(); }

    QString log() const
    {
        return QString::fromUtf8(m_system->readFile("~/Library/Logs/Quorwell/Test Host.log").value_or(""));
    }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
};
