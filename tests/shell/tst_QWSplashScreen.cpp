#include "MotionStyle.h"

#include "fakes/FakeSystem.h"
#include "fakes/QWTestMain.h"

#include <QWPlatform/foundation/Bundle.h>
#include <QWUtilities/shell/QWSplashScreen.h>
#include <QWUtilities/shell/panels/QWSplashScreenContentView.h>

#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QTimer>

namespace
{
/// A host that shows a splash screen when the test says so.
class Host : public QWApplication
{
public:
    using QWApplication::QWApplication;
    bool usesSplashScreen() const override { return uses; }
    bool uses = true;
};

/// Counts the paintings of a widget.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        paintings += event->type() == QEvent::Paint;
        return false;
    }
    int paintings = 0;
};

Host &host()
{
    return *static_cast<Host *>(QWApplication::sharedApplication());
}

QString textOf(const char *outlet)
{
    return QWSplashScreen::splashScreen().window()->findChild<QLabel *>(outlet)->text();
}
} // namespace

class tst_QWSplashScreen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void isOnePerMachine();
    void showsNameVersionAndCopyright();
    void versionIsSpeltOut_data();
    void versionIsSpeltOut();
    void wordsOfTheVersionAreLocalized();
    void isPaintedWhenOpenReturns();
    void actionIsPaintedWhileTheMainThreadIsBusy();
    void timersWaitUntilTheLaunchIsOver();
    void windowIsBorderlessCentredAndAsLargeAsItsView();
    void secondOpeningChangesNothing();
    void closingFadesThenForgets();
    void closingWithoutMotionForgetsAtOnce();
    void closingUnopenedForgetsAtOnce();
    void actionAfterTheEndMakesAnUnopenedScreen();
    void hostsWithoutSplashScreenGetNone();
    void gradientRunsFromBlackToGrey();
    void cornersAreRound();
    void longNamesStayInside();
    void incompleteInterfaceOpensNothing();

private:
    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
};

void tst_QWSplashScreen::init()
{
    host().uses = true;
    m_system = std::make_unique<FakeSystem>();
    m_scope = std::make_unique<platform::SystemScope>(*m_system);
}

void tst_QWSplashScreen::cleanup()
{
    m_system->releaseShared();
    m_scope.reset();
    m_system.reset();
}

void tst_QWSplashScreen::isOnePerMachine()
{
    QWSplashScreen *const first = &QWSplashScreen::splashScreen();
    QCOMPARE(&QWSplashScreen::splashScreen(), first);
    const FakeSystem other;
    const platform::SystemScope scope(const_cast<FakeSystem &>(other));
    QVERIFY(&QWSplashScreen::splashScreen() != first);
}

void tst_QWSplashScreen::showsNameVersionAndCopyright()
{
    QWSplashScreen::splashScreen().open();
    QCOMPARE(textOf("applicationNameText"), "Test Host");
    QCOMPARE(textOf("versionText"), "2.1 Beta 3");
    QCOMPARE(textOf("actionText"), "");
    QVERIFY(textOf("copyrightText").startsWith(QChar(0xA9)));
    QVERIFY(textOf("copyrightText").contains("2009"));
}

void tst_QWSplashScreen::versionIsSpeltOut_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("shown");
    const QList<std::pair<const char *, const char *>> rows{
        {"1.0", "1.0"},
        {"1.0a", "1.0 Alpha "},
        {"2.1b3", "2.1 Beta 3"},
        {"3.0rc1", "3.0 Release Candidate 1"},
        {"1.5pb2", "1.5 Public Beta 2"},
        {"1rc2b3", "1 Release Candidate 2b3"},
        {"1pb2rc3", "1 Public Beta 2rc3"},
        {"1b2a3", "1 Beta 2a3"},
        {"1b2b3", "1 Beta 2 Beta 3"},
        {"1.0B2", "1.0B2"},
        {"", ""},
    };
    for (const auto &[version, shown] : rows)
        QTest::newRow(version) << QString(version) << QString(shown);
}

void tst_QWSplashScreen::versionIsSpeltOut()
{
    QFETCH(const QString, version);
    QFETCH(const QString, shown);
    QVariantMap info = FakeSystem::defaultHostInfo();
    info["CFBundleShortVersionString"] = version;
    m_system->writePropertyList(m_system->mainBundle().path() + "/Contents/Info.plist", info);
    QWSplashScreen::splashScreen().open();
    QCOMPARE(textOf("versionText"), shown);
}

void tst_QWSplashScreen::wordsOfTheVersionAreLocalized()
{
    m_system->addHostResource("en.lproj/Localizable.strings", "\" Beta \" = \" Vorab \";\n\"%@...\" = \"[%@]\";");
    QWSplashScreen::splashScreen().open();
    QWSplashScreen::setAction("Locating");
    QCOMPARE(textOf("versionText"), "2.1 Vorab 3");
    QCOMPARE(textOf("actionText"), "[Locating]");
}

void tst_QWSplashScreen::isPaintedWhenOpenReturns()
{
    QWSplashScreen::setAction("early"); // makes it
    QWSplashScreen::splashScreen().open();
    const QWidget *const window = QWSplashScreen::splashScreen().window();
    QVERIFY(window->windowHandle()->isExposed());
    QVERIFY(!window->testAttribute(Qt::WA_PendingUpdate));
    QVERIFY(QWSplashScreen::isVisible());
    QCOMPARE(textOf("actionText"), "early...");
}

void tst_QWSplashScreen::actionIsPaintedWhileTheMainThreadIsBusy()
{
    QWSplashScreen::splashScreen().open();
    auto *const label = QWSplashScreen::splashScreen().window()->findChild<QLabel *>("actionText");
    const PaintCounter counter(label);
    QWSplashScreen::setAction("Locating Audio Units");
    QCOMPARE(label->text(), "Locating Audio Units...");
    QVERIFY(counter.paintings > 0);
}

void tst_QWSplashScreen::timersWaitUntilTheLaunchIsOver()
{
    bool fired = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] { fired = true; });
    timer.start(0);
    QWSplashScreen::splashScreen().open();
    QWSplashScreen::setAction("Locating");
    QVERIFY(!fired);
    QTRY_VERIFY(fired);
}

void tst_QWSplashScreen::windowIsBorderlessCentredAndAsLargeAsItsView()
{
    QWSplashScreen::splashScreen().open();
    const QWidget *const window = QWSplashScreen::splashScreen().window();
    const auto *const view = window->findChild<QWSplashScreenContentView *>("contentView");
    QVERIFY(window->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(!(window->windowFlags() & Qt::WindowStaysOnTopHint));
    QCOMPARE(window->size(), view->size());
    QCOMPARE(view->pos(), QPoint());
    const QPoint off = window->geometry().center() - window->screen()->availableGeometry().center();
    QVERIFY(off.manhattanLength() <= 2);
}

void tst_QWSplashScreen::secondOpeningChangesNothing()
{
    QWSplashScreen::splashScreen().open();
    QWidget *const window = QWSplashScreen::splashScreen().window();
    window->move(3, 4);
    QWSplashScreen::splashScreen().open();
    QCOMPARE(QWSplashScreen::splashScreen().window(), window);
    QCOMPARE(window->pos(), QPoint(3, 4));
}

void tst_QWSplashScreen::closingFadesThenForgets()
{
    QWSplashScreen::splashScreen().open();
    const QPointer<QWSplashScreen> splash = &QWSplashScreen::splashScreen();
    splash->close();
    QVERIFY(QWSplashScreen::isVisible());
    const QPointer<QWidget> window = splash->window();
    QTRY_VERIFY(!window || window->windowOpacity() < 1);
    QTRY_VERIFY(!splash);
    QVERIFY(!window);
    QVERIFY(!QWSplashScreen::isVisible());
    QVERIFY(!m_system->sharedIfMade<QWSplashScreen>());
}

void tst_QWSplashScreen::closingWithoutMotionForgetsAtOnce()
{
    const QString style = QApplication::style()->name();
    QApplication::setStyle(new MotionStyle(0));
    QWSplashScreen::splashScreen().open();
    QWSplashScreen::splashScreen().close();
    const bool made = m_system->sharedIfMade<QWSplashScreen>();
    QApplication::setStyle(style);
    QVERIFY(!made);
}

void tst_QWSplashScreen::closingUnopenedForgetsAtOnce()
{
    QWSplashScreen::splashScreen().close();
    QVERIFY(!m_system->sharedIfMade<QWSplashScreen>());
}

void tst_QWSplashScreen::actionAfterTheEndMakesAnUnopenedScreen()
{
    QWSplashScreen::splashScreen().close();
    QWSplashScreen::setAction("late");
    QVERIFY(m_system->sharedIfMade<QWSplashScreen>());
    QVERIFY(!QWSplashScreen::isVisible());
    QVERIFY(!QWSplashScreen::splashScreen().window());
}

void tst_QWSplashScreen::hostsWithoutSplashScreenGetNone()
{
    host().uses = false;
    QWSplashScreen::setAction("Locating Audio Units");
    QVERIFY(!QWSplashScreen::isVisible());
    QVERIFY(!m_system->sharedIfMade<QWSplashScreen>());
}

void tst_QWSplashScreen::gradientRunsFromBlackToGrey()
{
    QWSplashScreenContentView view;
    view.resize(100, 400);
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    const auto grey = [&](double height) {
        return qGray(image.pixel(50, static_cast<int>(std::lround((1 - height) * 399)))) / 255.0;
    };
    constexpr double tolerance = 0.02;
    QVERIFY(grey(0) < tolerance);
    QVERIFY(grey(0.25) < tolerance + 0.02); // the first stop's midpoint keeps the lower half dark
    QVERIFY(std::abs(grey(0.5) - 0.15) < tolerance + 0.02);
    QVERIFY(std::abs(grey(0.75) - 0.225) < tolerance);
    QVERIFY(std::abs(grey(1) - 0.3) < tolerance);
}

void tst_QWSplashScreen::cornersAreRound()
{
    QWSplashScreenContentView view;
    view.resize(100, 100);
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    for (const QPoint corner : {QPoint(0, 0), QPoint(99, 0), QPoint(0, 99), QPoint(99, 99)})
        QCOMPARE(qAlpha(image.pixel(corner)), 0);
    QCOMPARE(qAlpha(image.pixel(2, 2)), 255);
    QCOMPARE(qAlpha(image.pixel(6, 0)), 255);
}

void tst_QWSplashScreen::longNamesStayInside()
{
    QWSplashScreen::splashScreen().open();
    const QWidget *const window = QWSplashScreen::splashScreen().window();
    const QSize size = window->size();
    QWSplashScreen::setAction(QString(1000, 'W') + "\n\u202e&<b>\U0001f39b");
    QCoreApplication::processEvents();
    QCOMPARE(window->size(), size);
    const auto *const label = window->findChild<QLabel *>("actionText");
    QVERIFY(window->rect().contains(QRect(label->mapTo(window, QPoint()), label->size())));
}

void tst_QWSplashScreen::incompleteInterfaceOpensNothing()
{
    m_system->addHostResource("QWSplashScreen.ui", "not an interface file");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Interface file \"QWSplashScreen\""));
    QWSplashScreen::setAction("Locating");
    QWSplashScreen::splashScreen().open();
    QVERIFY(!QWSplashScreen::isVisible());
    QWSplashScreen::splashScreen().close();
}

int main(int argc, char **argv)
{
    Host application(argc, argv);
    tst_QWSplashScreen test;
    QTEST_SET_MAIN_SOURCE_PATH
    return qwtest::run(test, argc, argv);
}
#include "tst_QWSplashScreen.moc"
