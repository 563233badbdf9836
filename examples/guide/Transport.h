#pragma once

#include <QWUtilities/controllers/QWRemoteControlListener.h>

class Transport : public QWRemoteControlListener
{
public:
    Transport();
    ~Transport() override;

    void remoteControlButtonDown(QWRemoteControl &remote, unsigned button) override; // 0 to 5
};
