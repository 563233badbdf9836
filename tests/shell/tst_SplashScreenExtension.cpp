#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWUtilities/Categories.h>
#include <QWUtilities/shell/QWSplashScreen.h>

#include <QTimer>

#include <stdexcept>

namespace
{
/// A host whose launch work the test writes.
class Host : public QWApplication
{
public:
    using QWApplication::QWApplication;

    bool usesSplashScreen() const override { return uses; }
    void applicationDidFinishLaunching() override { launchWork(); }

    bool uses = true;
    std::function<void()> launchWork = [] {};
};

Host &host()
{
    return *static_cast<Host *>(QWApplication::sharedApplication());
}
} // namespace

class tst_SplashScreenExtension : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isRegisteredByLoadingTheLibrary();
    void splashScreenShowsDuringTheLaunchAndFadesAfterIt();
    void splashScreenGoesAwayAfterAFailedLaunch();
    void hostsThatUseNoneGetNone();
    void splashScreenOpensBeforeTheHostsWork();
};

void tst_SplashScreenExtension::init()
{
    host().uses = true;
}

void tst_SplashScreenExtension::isRegisteredByLoadingTheLibrary()
{
    QStringList names;
    for (const qw::ApplicationCategory &category : qw::applicationCategories())
        names.append(category.name);
    QVERIFY(names.contains("SplashScreenExtension"));
}

void tst_SplashScreenExtension::splashScreenShowsDuringTheLaunchAndFadesAfterIt()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    bool shown = false;
    host().launchWork = [&] {
        shown = QWSplashScreen::isVisible();
        QWSplashScreen::setAction("Locating Audio Units");
    };
    host().finishLaunching();
    QVERIFY(shown);
    QVERIFY(QWSplashScreen::isVisible()); // fading
    QTRY_VERIFY(!system.sharedIfMade<QWSplashScreen>());
}

void tst_SplashScreenExtension::splashScreenGoesAwayAfterAFailedLaunch()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    host().launchWork = [] { throw std::runtime_error("no sound card"); };
    try {
        host().finishLaunching();
    } catch (const std::exception &) { // whoever handles it, the splash screen must not stay
    }
    QTRY_VERIFY(!system.sharedIfMade<QWSplashScreen>());
}

void tst_SplashScreenExtension::hostsThatUseNoneGetNone()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    host().uses = false;
    bool made = true;
    host().launchWork = [&] {
        QWSplashScreen::setAction("Locating Audio Units");
        made = system.sharedIfMade<QWSplashScreen>();
    };
    host().finishLaunching();
    QVERIFY(!made);
    QVERIFY(!QWSplashScreen::isVisible());
    QVERIFY(!system.sharedIfMade<QWSplashScreen>());
}

void tst_SplashScreenExtension::splashScreenOpensBeforeTheHostsWork()
{
    FakeSystem system;
    const platform::SystemScope scope(system);
    QStringList order;
    host().launchWork = [&] {
        order.append(QWSplashScreen::isVisible() ? "work under the splash screen" : "work alone");
    };
    host().finishLaunching();
    order.append(QWSplashScreen::splashScreen().window()->windowOpacity() > 0 ? "fade runs later" : "gone");
    QCOMPARE(order, QStringList({"work under the splash screen", "fade runs later"}));
}

int main(int argc, char **argv)
{
    Host application(argc, argv);
    tst_SplashScreenExtension test;
    QTEST_SET_MAIN_SOURCE_PATH
    return qwtest::run(test, argc, argv);
}
#include "tst_SplashScreenExtension.moc"
