#include "QWMonomeRemoteObserver.h"

QWMonomeRemoteObserver::~QWMonomeRemoteObserver() = default;

void QWMonomeRemoteObserver::monomeRemoteConnected(QWMonomeRemote &) {}

void QWMonomeRemoteObserver::monomeRemoteRemoved(QWMonomeRemote &) {}

void QWMonomeRemoteObserver::monomeRemoteButtonDownAtPosition(QWMonomeRemote &, QWGridPosition) {}

void QWMonomeRemoteObserver::monomeRemoteButtonUpAtPosition(QWMonomeRemote &, QWGridPosition) {}
