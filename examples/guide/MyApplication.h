#pragma once

#include <QWBase/QWApplication.h>
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <memory>
#include <optional>

class GridLights;
class HostWindow;
class Transport;

class MyApplication : public QWApplication
{
    Q_OBJECT

public:
    MyApplication(int &argc, char **argv);
    ~MyApplication() override;

    bool usesSplashScreen() const override { return true; }
    void getUrlWithReplyEvent(const QString &url) override; // your URL schemes

    // Actions. The responder chain ends here, so whatever has the focus, these are found.
    Q_INVOKABLE void insertEffect(QObject *sender); // sender is the menu item
    Q_INVOKABLE void toggleKeyboardShortcuts(QObject *sender);
    Q_INVOKABLE void toggleScrollWheelActions(QObject *sender);
    Q_INVOKABLE void openPreferences(QObject *sender);
    Q_INVOKABLE void openManual(QObject *sender);
    Q_INVOKABLE void openAbout(QObject *sender);

protected:
    void applicationDidFinishLaunching() override;

private:
    std::optional<QWAUManager> m_units;
    std::optional<QWVSTManager> m_vst;
    std::unique_ptr<HostWindow> m_window;
    std::unique_ptr<GridLights> m_lights;
    std::unique_ptr<Transport> m_transport;
};
