#include "QWRemoteControlListener.h"

QWRemoteControlListener::~QWRemoteControlListener() = default;

void QWRemoteControlListener::remoteControlButtonDown(QWRemoteControl &, unsigned) {}

void QWRemoteControlListener::remoteControlButtonUp(QWRemoteControl &, unsigned) {}
