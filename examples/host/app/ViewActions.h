#pragma once

#include "Playback.h"

#include <QWPlatform/appkit/Theme.h>

class QAction;

namespace platform
{
class MenuItem;
}

namespace demo
{

class AudioDocument;
class MainWindow;

/// What the user can do with the picture of the sound: look, move, select, play, choose the step that is shown. The
/// receiver of the menus' and shortcuts' actions; the sender's tag says how much or which.
class ViewActions : public QObject
{
    Q_OBJECT

public:
    /// Of @p theme it only remembers that it is the one in use.
    ViewActions(AudioDocument &document, MainWindow &window, platform::ThemeChoice theme);

    const Playback &playback() const { return m_playback; }

    Q_INVOKABLE void zoom(QObject *sender);          ///< 1: in, -1: out, 0: all, 2: the selection.
    Q_INVOKABLE void scroll(QObject *sender);        ///< Percent of what is visible.
    Q_INVOKABLE void movePosition(QObject *sender);  ///< Percent of what is visible.
    Q_INVOKABLE void goTo(QObject *sender);          ///< 0, 1: the sound's start and end; 2, 3: the selection's.
    Q_INVOKABLE void selectRange(QObject *sender);   ///< 0: nothing, 1: all, 2, 3: from the position to start or end.
    Q_INVOKABLE void growSelection(QObject *sender); ///< Percent of what is visible, at the right end.
    Q_INVOKABLE void togglePlayback(QObject *sender);
    Q_INVOKABLE void playSelection(QObject *sender);
    Q_INVOKABLE void stepStation(QObject *sender); ///< 1: the next one of the chain, -1: the one before.
    Q_INVOKABLE void showStation(QObject *sender); ///< 0: the source, -1: the result.
    Q_INVOKABLE void toggleView(QObject *sender);  ///< The represented object names it: "ruler", "chain", "fullScreen".
    Q_INVOKABLE void chooseTheme(QObject *sender); ///< A platform::ThemeChoice.
    Q_INVOKABLE bool validateMenuItem(QAction *item);

    /// The theme of earlier runs.
    static platform::ThemeChoice storedTheme();

private:
    void _play(const TimeRange &range);
    void _follow(double seconds, float level);
    bool _isShown(const QString &view) const;

    AudioDocument &m_document;
    MainWindow &m_window;
    platform::ThemeChoice m_theme;
    Playback m_playback;
};

} // namespace demo
