#pragma once

#include "HostOptions.h"

#include <QWBase/QWApplication.h>

#include <memory>

class QWAUManager;
class QWVSTManager;

namespace demo
{

class AudioDocument;
class ControllerActions;
class HostMenus;
class MainWindow;
class SoundActions;
class Tour;
class ViewActions;
class WheelActions;

/// The demo host. Made for what the command line asked for; everything else is made while it launches.
class DemoApplication : public QWApplication
{
    Q_OBJECT

public:
    DemoApplication(int &argc, char **argv, HostOptions options);
    ~DemoApplication() override;

    bool usesSplashScreen() const override { return true; }
    bool openFile(const QString &path) override;

    // All of these are there once the launch is over.
    MainWindow &mainWindow() const { return *m_window; }
    AudioDocument &document() const { return *m_document; }
    SoundActions &actions() const { return *m_actions; }
    ViewActions &viewActions() const { return *m_viewActions; }
    HostMenus &menus() const { return *m_menus; }

    /// Looks for new plug-ins behind the splash screen and fills the menus anew.
    void scanPlugIns();

    // Actions of menu items and shortcuts.
    Q_INVOKABLE void importFromRecorder(QObject *sender);
    Q_INVOKABLE void toggleKeyboardShortcuts(QObject *sender);
    Q_INVOKABLE void toggleScrollWheelActions(QObject *sender);
    Q_INVOKABLE void openPreferences(QObject *sender);
    Q_INVOKABLE void applyControllerSettings(QObject *sender);
    Q_INVOKABLE void openManual(QObject *sender);
    Q_INVOKABLE void openLegal(QObject *sender);
    Q_INVOKABLE void openAcknowledgements(QObject *sender);
    Q_INVOKABLE void openAbout(QObject *sender);
    Q_INVOKABLE void validatePlugIns(QObject *sender); ///< Wraps bare libraries in the background, then scans.
    Q_INVOKABLE void terminate(QObject *sender);       ///< Closes the window, which may object, and quits.

protected:
    void applicationDidFinishLaunching() override;

private:
    void _setUp();
    void _loadIcon();
    void _validate();
    void _openWindow();
    void _takeUpControllers();
    void _openFirstSound();

    HostOptions m_options;
    std::unique_ptr<Tour> m_tour; ///< From before the launch, which it watches; null without a tour.
    std::unique_ptr<QWAUManager> m_units;
    std::unique_ptr<QWVSTManager> m_vst;
    std::unique_ptr<AudioDocument> m_document;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<SoundActions> m_actions;
    std::unique_ptr<ViewActions> m_viewActions;
    std::unique_ptr<HostMenus> m_menus;
    std::unique_ptr<WheelActions> m_wheelActions;
    std::unique_ptr<ControllerActions> m_controllerActions;
    platform::ThemeChoice m_theme = platform::ThemeChoice::System;
};

} // namespace demo
