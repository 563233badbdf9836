#pragma once

#include <QWUtilities/controllers/QWMonomeRemoteObserver.h>
#include <QWUtilities/controllers/QWRemoteControlListener.h>

#include <QObject>
#include <QTimer>

namespace demo
{

class Viewport;

/// What grid and remote do in the host, as far as the user lets them: a column of the grid is a place in what is shown
/// of the sound, and its light follows the play head; the remote plays, moves and zooms.
class ControllerActions : public QObject, public QWMonomeRemoteObserver, public QWRemoteControlListener
{
    Q_OBJECT

public:
    /// @p viewport is not owned.
    explicit ControllerActions(Viewport &viewport);
    ~ControllerActions() override;

    /// Takes up and leaves the controllers as the settings say.
    void applySettings();

    /// On the grid's own thread.
    void monomeRemoteButtonDownAtPosition(QWMonomeRemote &remote, QWGridPosition position) override;
    void monomeRemoteConnected(QWMonomeRemote &remote) override;
    void remoteControlButtonDown(QWRemoteControl &remoteControl, unsigned button) override;

private:
    void _useGrid(bool use);
    void _lightUp();
    void _goToColumn(float column);
    void _showPosition();
    void _send(const char *action, int tag);

    Viewport &m_viewport;
    bool m_usesGrid = false;
    bool m_usesRemote = false;
    int m_litColumn = -1;
    QTimer m_show; ///< Until it is over, lights that are set go out again.
};

} // namespace demo
