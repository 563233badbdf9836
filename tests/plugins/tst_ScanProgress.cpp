#include "PluginTestSupport.h"
#include "fakes/QWTestMain.h"

#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>
#include <QWUtilities/shell/QWSplashScreen.h>

#include <QLabel>

using platform::ChildProcessRequest;
using platform::ChildProcessResult;
using platform::SystemScope;

namespace
{
class Host : public QWApplication
{
public:
    using QWApplication::QWApplication;
    bool usesSplashScreen() const override { return uses; }
    bool uses = true;
};

/// What the action line of the open splash screen says.
QString actionLine()
{
    return QWSplashScreen::splashScreen().window()->findChild<QLabel *>("actionText")->text();
}

/// A machine with one new plug-in of each kind; its validators note what the splash screen says meanwhile.
class Machine
{
public:
    Machine()
        : m_scope(system)
    {
        system.components.add("aufx", "Dlay", "Acme", "Acme: Delay");
        system.addVSTBundle("/Library/Audio/Plug-Ins/VST/Acme/Echo.vst");
        system.processes.handler = [this](const ChildProcessRequest &) {
            lines.append(QWSplashScreen::isVisible() ? actionLine() : "no splash screen");
            return ChildProcessResult{};
        };
    }

    FakeSystem system;
    QStringList lines;

private:
    SystemScope m_scope;
};
} // namespace

/// What the splash screen tells during the scans.
class tst_ScanProgress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { _host().uses = true; }
    void locatingIsToldFirst();
    void eachNewPluginIsTold();
    void unopenedScreenIsToldTheLocatingOnly();
    void hostWithoutSplashScreenMakesNone();
    void textsAreLocalized();

private:
    static Host &_host() { return *static_cast<Host *>(QWApplication::sharedApplication()); }
};

void tst_ScanProgress::locatingIsToldFirst()
{
    FakeSystem empty;
    SystemScope current(empty);
    QWSplashScreen::splashScreen().open();
    QWAUManager().validate();
    QCOMPARE(actionLine(), "Locating Audio Units...");
    QWVSTManager().validate();
    QCOMPARE(actionLine(), "Locating VST Plug-ins...");
}

void tst_ScanProgress::eachNewPluginIsTold()
{
    Machine machine;
    QWSplashScreen::splashScreen().open();
    QWAUManager().validate();
    QWVSTManager().validate();
    QCOMPARE(machine.lines, (QStringList{"Validating 'Delay'...", "Validating 'Echo'..."}));
    QWAUManager().validate(); // nothing new
    QCOMPARE(actionLine(), "Locating Audio Units...");
}

void tst_ScanProgress::unopenedScreenIsToldTheLocatingOnly()
{
    Machine machine;
    QWAUManager().validate();
    QVERIFY(!QWSplashScreen::isVisible());
    QWSplashScreen::splashScreen().open();
    QCOMPARE(actionLine(), "Locating Audio Units...");
    QCOMPARE(machine.lines, QStringList{"no splash screen"});
}

void tst_ScanProgress::hostWithoutSplashScreenMakesNone()
{
    _host().uses = false;
    Machine machine;
    QWAUManager().validate();
    QWVSTManager().validate();
    QVERIFY(!machine.system.sharedIfMade<QWSplashScreen>());
    QCOMPARE(machine.lines, QStringList(2, "no splash screen"));
}

void tst_ScanProgress::textsAreLocalized()
{
    Machine machine;
    machine.system.addHostResource("Localizable.strings", "\"Locating Audio Units\" = \"Suche\";"
                                                          "\"Validating '%@'\" = \"%@ wird geprüft\";");
    QWSplashScreen::splashScreen().open();
    QWAUManager manager;
    manager.validate();
    QCOMPARE(machine.lines, QStringList{"Delay wird geprüft..."});
    manager.validate();
    QCOMPARE(actionLine(), "Suche...");
}

int main(int argc, char **argv)
{
    Host host(argc, argv);
    tst_ScanProgress test;
    QTEST_SET_MAIN_SOURCE_PATH
    return qwtest::run(test, argc, argv);
}
#include "tst_ScanProgress.moc"
