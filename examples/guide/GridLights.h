#pragma once

#include <QWUtilities/controllers/QWMonomeRemoteObserver.h>

#include <QObject>

class GridLights : public QObject, public QWMonomeRemoteObserver
{
    Q_OBJECT

public:
    GridLights();
    ~GridLights() override;

    // On the grid's reader thread.
    void monomeRemoteButtonDownAtPosition(QWMonomeRemote &remote, QWGridPosition position) override;

private:
    void _show(QWGridPosition position);
};
