#pragma once

#include "../audio/Clip.h"
#include "../views/Viewport.h"

#include <QMainWindow>

#include <functional>

class QPushButton;
class QStackedWidget;

namespace demo
{

class AudioDocument;
class ChainStrip;
class ElidedText;
class EmptyState;
class TransportLine;
class WaveformPair;

/// The window of the application: the sound, what it went through, and how it looked before and after. It shows the
/// document and tells what the user wants; it decides nothing.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(AudioDocument &document);
    ~MainWindow() override;

    TransportLine &transport() const { return *m_transport; }
    Viewport &viewport() { return m_viewport; }

    /// What is shown of the chain: 0 is the source, 1 what the first step made of it. Beyond the ends is the end.
    int station() const { return m_station; }
    void showStation(int station);
    ClipPointer shownClip() const; ///< Null while there is no sound.

    void showRuler(bool visible);
    bool showsRuler() const;
    void showChain(bool visible);
    bool showsChain() const;

    /// The menus that the window's buttons open. Not owned.
    void setPlugInMenus(QMenu *effects, QMenu *instruments);

    /// Takes the frame of the last run, fitted to a screen that still shows it, else the middle of the screen, and is
    /// maximised again where it was; from now on this is remembered when the window closes. A frame that only the
    /// screen made smaller is not.
    void restoreFrame();

    /// Asked before the window closes; false keeps it open.
    std::function<bool()> mayClose;

Q_SIGNALS:
    void openRequested();
    void testToneRequested();
    void saveRequested();
    void cancelRequested();
    void filesDropped(const QStringList &paths);
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QWidget *_makeContent();
    QWidget *_makeHeader();
    QPushButton *_makeButton(const QString &icon, const QString &title);
    void _showDocument();
    void _beginWithSource();
    void _rememberFrame() const;

    AudioDocument &m_document;
    Viewport m_viewport;
    ClipPointer m_source; ///< Of the sound that is shown.
    int m_station = 0;
    bool m_remembersFrame = false;
    QRect m_fittedFrame; ///< As restored, when it was not the one remembered.
    QStackedWidget *m_stack;
    EmptyState *m_empty;
    ElidedText *m_title;
    QPushButton *m_open;
    QPushButton *m_effects;
    QPushButton *m_instruments;
    QPushButton *m_save;
    ChainStrip *m_chain;
    WaveformPair *m_waveforms;
    TransportLine *m_transport;
};

} // namespace demo
