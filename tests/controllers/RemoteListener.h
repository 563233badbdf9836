#pragma once

#include <QWUtilities/controllers/QWRemoteControl.h>
#include <QWUtilities/controllers/QWRemoteControlListener.h>

#include <QStringList>

#include <functional>

/// Notes what it hears, as "down 3" and "up 3"; does what the test wants done meanwhile.
class RemoteListener : public QWRemoteControlListener
{
public:
    ~RemoteListener() override { QWRemoteControl::remoteControl().removeListener(this); }

    void remoteControlButtonDown(QWRemoteControl &remote, unsigned button) override { _note(remote, "down", button); }
    void remoteControlButtonUp(QWRemoteControl &remote, unsigned button) override { _note(remote, "up", button); }

    QStringList heard;
    QWRemoteControl *caller = nullptr;
    std::function<void()> meanwhile;

private:
    void _note(QWRemoteControl &remote, const QString &what, unsigned button)
    {
        caller = &remote;
        heard += what + ' ' + QString::number(button);
        if (meanwhile)
            meanwhile();
    }
};
