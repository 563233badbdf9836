#include "GridLights.h"

#include <QWUtilities/controllers/QWMonomeRemote.h>

#include <QDebug>

GridLights::GridLights()
{
    QWMonomeRemote::remote().addObserver(*this);
}

GridLights::~GridLights()
{
    QWMonomeRemote::remote().removeObserver(*this);
}

void GridLights::monomeRemoteButtonDownAtPosition(QWMonomeRemote &remote, QWGridPosition position)
{
    remote.toggleLEDAtPosition(position); // from any thread
    QMetaObject::invokeMethod(
        this, [this, position] { _show(position); }, Qt::QueuedConnection);
}

void GridLights::_show(QWGridPosition position)
{
    qInfo() << "button" << position.x << position.y;
}
