#pragma once

#include <QMainWindow>

#include <functional>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace demo
{

class AudioDocument;
class ChainStrip;
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

    /// The menus that the window's buttons open. Not owned.
    void setPlugInMenus(QMenu *effects, QMenu *instruments);

    /// Restores the frame of the last run, where a screen still shows it.
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
    void _showStation(int station);
    QString _frameKey() const;

    AudioDocument &m_document;
    QStackedWidget *m_stack;
    EmptyState *m_empty;
    QLabel *m_title;
    QPushButton *m_open;
    QPushButton *m_effects;
    QPushButton *m_instruments;
    QPushButton *m_save;
    ChainStrip *m_chain;
    WaveformPair *m_waveforms;
    TransportLine *m_transport;
};

} // namespace demo
