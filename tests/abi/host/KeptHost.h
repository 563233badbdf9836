#pragma once

#include "Answers.h"

#include <QWBase/QWApplication.h>

/// Asks a bit of everything once it is launched, and ends with 0 when every answer was right.
class KeptHost : public QWApplication
{
    Q_OBJECT

public:
    using QWApplication::QWApplication;

    QString code() const override { return "KH"; }
    bool usesSplashScreen() const override { return true; }
    bool usesSingleInstance() const override { return false; }
    void getUrlWithReplyEvent(const QString &url) override { m_url = url; }
    bool openFile(const QString &path) override { return path == "kept.wav"; }
    Q_INVOKABLE void changeGain(QObject *sender) { m_gain = sender->property("tag").toInt(); }

protected:
    void applicationDidFinishLaunching() override;

private:
    void _askItself();
    void _askPlatform();
    void _askBase();
    void _askMenus();
    void _askShortcuts();
    void _askPreferences();
    void _askControllers();
    void _askCatalogs();
    void _askTables();
    void _expect(bool right, const char *what) { m_answers.expect(right, what); }

    QString m_url = "none"; // behind what the library keeps in an application object
    int m_gain = 7;
    Answers m_answers;
};
