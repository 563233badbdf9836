#include "ControllerActions.h"

#include "../views/Viewport.h"
#include "HostSettings.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/foundation/UserDefaults.h>
#include <QWUtilities/controllers/QWMonomeRemote.h>
#include <QWUtilities/controllers/QWRemoteControl.h>

#include <algorithm>
#include <array>
#include <utility>

namespace demo
{

namespace
{
constexpr int quadrantColumns = 8; ///< Lights beyond cannot be switched one by one.
constexpr int mostColumns = 16;
constexpr int showMilliseconds = 1500; ///< A grid that comes plays with its lights for so long at most.

/// Columns 8 to 15 come as -8 to -1.
float columnOf(QWGridPosition position)
{
    return position.x < 0 ? position.x + mostColumns : position.x;
}

/// A light of the top row.
void setLight(QWMonomeRemote &grid, int column, bool on)
{
    if (column < quadrantColumns)
        return grid.setLEDStateAtPosition(on, {static_cast<float>(column), 0});
    const std::array<quint8, 8> rows{static_cast<quint8>(on ? 1 << (column - quadrantColumns) : 0)};
    grid.setLEDFrameAtQuadrant(rows.data(), 1);
}

struct RemoteAction
{
    const char *action;
    int tag;
};

/// In the order of the remote's buttons: menu, play, plus, minus, back, next.
constexpr std::array remoteActions{
    RemoteAction{"openPreferences:", 0}, RemoteAction{"togglePlayback:", 0}, RemoteAction{"zoom:", 1},
    RemoteAction{"zoom:", -1},           RemoteAction{"movePosition:", -10}, RemoteAction{"movePosition:", 10}};
} // namespace

ControllerActions::ControllerActions(Viewport &viewport)
    : m_viewport(viewport)
{
    m_show.setSingleShot(true);
    m_show.setInterval(showMilliseconds);
    connect(&m_show, &QTimer::timeout, this, &ControllerActions::_lightUp);
    connect(&viewport, &Viewport::positionChanged, this, &ControllerActions::_showPosition);
    connect(&viewport, &Viewport::visibleChanged, this, &ControllerActions::_showPosition);
}

ControllerActions::~ControllerActions()
{
    _useGrid(false);
    if (m_usesRemote)
        QWRemoteControl::remoteControl().removeListener(this);
}

void ControllerActions::applySettings()
{
    _useGrid(HostSettings::isOn(HostSettings::gridKey));
    const bool usesRemote = HostSettings::isOn(HostSettings::remoteKey);
    if (usesRemote != std::exchange(m_usesRemote, usesRemote)) {
        QWRemoteControl &remote = QWRemoteControl::remoteControl();
        usesRemote ? remote.addListener(this) : remote.removeListener(this);
    }
}

void ControllerActions::_useGrid(bool use)
{
    if (!use && !m_usesGrid)
        return;
    QWMonomeRemote &grid = QWMonomeRemote::remote();
    if (use != std::exchange(m_usesGrid, use)) {
        use ? grid.addObserver(*this) : grid.removeObserver(*this);
        m_show.start(); // it may have come just now
    }
    if (use)
        _lightUp();
    else if (grid.isConnected())
        grid.clearLEDs();
}

/// The grid's own show would end what is lit now.
void ControllerActions::monomeRemoteConnected(QWMonomeRemote &)
{
    m_show.start();
}

void ControllerActions::_lightUp()
{
    if (!m_usesGrid || !QWMonomeRemote::remote().isConnected())
        return;
    const auto percent = platform::System::current().userDefaults().integer(HostSettings::gridIntensityKey);
    QWMonomeRemote::remote().setIntensity(static_cast<float>(std::clamp<qlonglong>(percent, 0, 100)) / 100);
    m_litColumn = -1;
    _showPosition();
}

void ControllerActions::monomeRemoteButtonDownAtPosition(QWMonomeRemote &, QWGridPosition position)
{
    QMetaObject::invokeMethod(
        this, [this, column = columnOf(position)] { _goToColumn(column); }, Qt::QueuedConnection);
}

void ControllerActions::_goToColumn(float column)
{
    const auto columns = static_cast<double>(std::max(QWMonomeRemote::remote().numberOfColumns(), 1U));
    const TimeRange &visible = m_viewport.visible();
    m_viewport.setPosition(visible.begin + visible.length() * static_cast<double>(column) / columns);
}

void ControllerActions::_showPosition()
{
    if (!m_usesGrid || !QWMonomeRemote::remote().isConnected() || m_viewport.visible().isEmpty())
        return;
    QWMonomeRemote &grid = QWMonomeRemote::remote();
    const TimeRange &visible = m_viewport.visible();
    const double part = (m_viewport.position() - visible.begin) / visible.length();
    const int column = static_cast<int>(std::clamp(part, 0.0, 0.999) * grid.numberOfColumns());
    if (column == m_litColumn)
        return;
    if (m_litColumn >= 0)
        setLight(grid, m_litColumn, false);
    setLight(grid, column, true);
    m_litColumn = column;
}

void ControllerActions::remoteControlButtonDown(QWRemoteControl &, unsigned button)
{
    if (button < remoteActions.size())
        _send(remoteActions.at(button).action, remoteActions.at(button).tag);
}

void ControllerActions::_send(const char *action, int tag)
{
    QObject sender;
    sender.setProperty("tag", tag);
    platform::sendAction(action, nullptr, &sender);
}

} // namespace demo
