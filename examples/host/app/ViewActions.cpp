#include "ViewActions.h"

#include "../audio/AudioDocument.h"
#include "../views/TransportLine.h"
#include "../views/Viewport.h"
#include "MainWindow.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/MenuItem.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QApplication>

#include <algorithm>
#include <array>

namespace demo
{

using platform::MenuItem;
using platform::Selector;
using platform::ThemeChoice;

namespace
{
constexpr double zoomFactor = 1.6;
constexpr auto themeKey = "Theme";

/// Menu items and shortcuts alike.
int tagOf(const QObject *sender)
{
    return sender ? sender->property("tag").toInt() : 0;
}

QString viewOf(const QObject *sender)
{
    return sender ? sender->property("representedObject").toString() : QString();
}

double visiblePart(const Viewport &viewport, int percent)
{
    return viewport.visible().length() * percent / 100;
}

bool needsSelection(const MenuItem &item)
{
    return (item.action() == Selector("zoom:") && item.tag() == 2) ||
           (item.action() == Selector("selectRange:") && item.tag() == 0);
}
} // namespace

ViewActions::ViewActions(AudioDocument &document, MainWindow &window, ThemeChoice theme)
    : m_document(document)
    , m_window(window)
    , m_theme(theme)
{
    connect(&m_playback, &Playback::moved, this, &ViewActions::_follow);
    connect(&m_playback, &Playback::playingChanged, &window.transport(), &TransportLine::showPlaying);
    connect(&window.transport(), &TransportLine::playRequested, this, [this] { togglePlayback(nullptr); });
    connect(&document, &AudioDocument::changed, &m_playback, &Playback::abandon);
}

ThemeChoice ViewActions::storedTheme()
{
    const qlonglong stored = platform::System::current().userDefaults().integer(themeKey);
    const bool known = stored >= 0 && stored <= static_cast<qlonglong>(ThemeChoice::Dark);
    return known ? static_cast<ThemeChoice>(stored) : ThemeChoice::System;
}

/// Page by page: a picture that moved with the sound would be hard to look at.
void ViewActions::_follow(double seconds, float level)
{
    Viewport &viewport = m_window.viewport();
    if (viewport.visible().contains(viewport.position()) && seconds > viewport.visible().end)
        viewport.scroll(1);
    viewport.setPosition(seconds);
    m_window.transport().showLevel(level);
}

void ViewActions::zoom(QObject *sender)
{
    Viewport &viewport = m_window.viewport();
    switch (tagOf(sender)) {
    case 0:
        return viewport.showAll();
    case 2:
        return viewport.selection().isEmpty() ? viewport.showAll() : viewport.setVisible(viewport.selection());
    default:
        return viewport.zoom(tagOf(sender) > 0 ? zoomFactor : 1 / zoomFactor);
    }
}

void ViewActions::scroll(QObject *sender)
{
    m_window.viewport().scroll(tagOf(sender) / 100.0);
}

void ViewActions::movePosition(QObject *sender)
{
    Viewport &viewport = m_window.viewport();
    viewport.setPosition(viewport.position() + visiblePart(viewport, tagOf(sender)));
}

void ViewActions::goTo(QObject *sender)
{
    Viewport &viewport = m_window.viewport();
    const TimeRange all{0, viewport.duration()};
    const bool inSelection = tagOf(sender) >= 2 && !viewport.selection().isEmpty();
    const TimeRange &range = inSelection ? viewport.selection() : all;
    viewport.setPosition(tagOf(sender) % 2 == 0 ? range.begin : range.end);
}

void ViewActions::selectRange(QObject *sender)
{
    Viewport &viewport = m_window.viewport();
    const std::array ranges{TimeRange{}, TimeRange{0, viewport.duration()}, TimeRange{0, viewport.position()},
                            TimeRange{viewport.position(), viewport.duration()}};
    viewport.setSelection(ranges[static_cast<size_t>(std::clamp(tagOf(sender), 0, 3))]);
}

void ViewActions::growSelection(QObject *sender)
{
    Viewport &viewport = m_window.viewport();
    TimeRange range = viewport.selection();
    if (range.isEmpty())
        range = {viewport.position(), viewport.position()};
    range.end += visiblePart(viewport, tagOf(sender));
    viewport.setSelection(range);
}

void ViewActions::togglePlayback(QObject *)
{
    const Viewport &viewport = m_window.viewport();
    if (m_playback.isPlaying())
        return m_playback.stop();
    const bool isAtEnd = viewport.position() >= viewport.duration();
    _play({isAtEnd ? 0 : viewport.position(), viewport.duration()});
}

void ViewActions::playSelection(QObject *)
{
    const Viewport &viewport = m_window.viewport();
    _play(viewport.selection().isEmpty() ? viewport.visible() : viewport.selection());
}

void ViewActions::_play(const TimeRange &range)
{
    if (const ClipPointer clip = m_window.shownClip())
        m_playback.start(clip, range);
}

void ViewActions::stepStation(QObject *sender)
{
    m_window.showStation(m_window.station() + tagOf(sender));
}

void ViewActions::showStation(QObject *sender)
{
    m_window.showStation(tagOf(sender) < 0 ? static_cast<int>(m_document.steps().size()) : tagOf(sender));
}

bool ViewActions::_isShown(const QString &view) const
{
    if (view == "fullScreen")
        return m_window.isFullScreen();
    return view == "ruler" ? m_window.showsRuler() : m_window.showsChain();
}

void ViewActions::toggleView(QObject *sender)
{
    const QString view = viewOf(sender);
    if (view == "ruler")
        m_window.showRuler(!_isShown(view));
    else if (view == "chain")
        m_window.showChain(!_isShown(view));
    else if (view == "fullScreen")
        m_window.setWindowState(m_window.windowState() ^ Qt::WindowFullScreen);
}

void ViewActions::chooseTheme(QObject *sender)
{
    m_theme = static_cast<ThemeChoice>(std::clamp(tagOf(sender), 0, static_cast<int>(ThemeChoice::Dark)));
    platform::System::current().userDefaults().setObject(themeKey, static_cast<qlonglong>(m_theme));
    platform::applyTheme(*qApp, m_theme);
}

bool ViewActions::validateMenuItem(QAction *action)
{
    const auto *const item = qobject_cast<MenuItem *>(action);
    if (!item)
        return true;
    if (item->action() == Selector("chooseTheme:")) {
        action->setCheckable(true);
        action->setChecked(item->tag() == static_cast<qlonglong>(m_theme));
        return true;
    }
    if (item->action() == Selector("toggleView:")) {
        action->setCheckable(true);
        action->setChecked(_isShown(item->representedObject().toString()));
        return true;
    }
    return !m_document.isEmpty() && !(needsSelection(*item) && m_window.viewport().selection().isEmpty());
}

} // namespace demo
