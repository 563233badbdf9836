#include "WheelActions.h"

#include "../views/TransportLine.h"
#include "../views/Viewport.h"
#include "../views/WaveformView.h"
#include "MainWindow.h"
#include "SoundActions.h"

#include <QWPlatform/appkit/ScrollEvent.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWUtilities/controllers/QWScrollWheelManager.h>

#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace demo
{

using platform::localized;

namespace
{
constexpr double zoomPerLine = 1.25;
constexpr double partPerLine = 0.08;  ///< Of what is visible.
constexpr int restMilliseconds = 400; ///< After which the wheel has come to rest.
constexpr double greatestChange = 24; ///< Decibels at once.
} // namespace

WheelActions::WheelActions(MainWindow &window, SoundActions &actions)
    : m_window(window)
    , m_actions(actions)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(restMilliseconds);
    connect(&m_rest, &QTimer::timeout, this, &WheelActions::_applyLevel);
    const QList<WaveformView *> views = window.findChildren<WaveformView *>();
    for (WaveformView *view : views)
        view->installEventFilter(this);
}

bool WheelActions::eventFilter(QObject *watched, QEvent *event)
{
    auto *view = event->type() == QEvent::Wheel ? qobject_cast<QWidget *>(watched) : nullptr;
    if (!view)
        return false;
    const auto &wheel = static_cast<QWheelEvent &>(*event);
    const TimeRange &visible = m_window.viewport().visible();
    m_pointer = visible.begin + visible.length() * wheel.position().x() / std::max(view->width(), 1);
    event->setAccepted(QWScrollWheelManager::scrollWheelEventTarget(wheel, this));
    return event->isAccepted();
}

void WheelActions::zoomWaveform(double lines)
{
    Viewport &viewport = m_window.viewport();
    const TimeRange &visible = viewport.visible();
    const double most = viewport.duration() / Viewport::shortestVisible;
    const double factor = std::clamp(std::pow(zoomPerLine, -lines), 1 / std::max(most, 1.0), std::max(most, 1.0));
    const double length = std::max(visible.length() * factor, Viewport::shortestVisible);
    const double part = visible.isEmpty() ? 0 : (m_pointer - visible.begin) / visible.length();
    viewport.setVisible({m_pointer - part * length, m_pointer + (1 - part) * length});
}

void WheelActions::scrollWaveform(double lines)
{
    m_window.viewport().scroll(-lines * partPerLine);
}

void WheelActions::movePosition(double lines)
{
    Viewport &viewport = m_window.viewport();
    viewport.setPosition(viewport.position() - lines * partPerLine * viewport.visible().length());
}

void WheelActions::changeLevel(double lines)
{
    m_level = std::clamp(m_level + lines, -greatestChange, greatestChange);
    const int decibels = static_cast<int>(std::lround(m_level));
    const QString amount = (decibels > 0 ? "+" : "") + QString::number(decibels);
    m_window.transport().showStatus(platform::formatted(localized("Level %@ dB"), {amount}));
    m_rest.start();
}

/// Its tag says how much.
void WheelActions::_applyLevel()
{
    QObject sender;
    const auto decibels = static_cast<int>(std::lround(std::exchange(m_level, 0)));
    sender.setProperty("tag", decibels);
    if (decibels != 0)
        m_actions.changeGain(&sender);
}

} // namespace demo
