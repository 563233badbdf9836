// Also built to run on an X server with a window manager, where the user's ways to hide a window are real.
#include <QWPlatform/appkit/windows/WindowHiding.h>

#ifdef QW_TEST_ON_X
#include "shortcuts/XServer.h"

#include <QProcess>
#endif

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <QWindow>

using namespace platform;

class tst_WindowHiding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
#ifdef QW_TEST_ON_X
    void initTestCase();
#endif
    void init();

    void windowCanHideAtFirst();
    void minimizedWindowComesBack();
    void windowThatIsMinimizedAlreadyComesBack();
    void windowThatMayHideStaysMinimized();
    void applicationMayCloseIt();
    void quitIsNotHeldUp();

private:
    void _minimize() const;

    std::unique_ptr<QWidget> m_window;
};

void tst_WindowHiding::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

#ifdef QW_TEST_ON_X
/// Waits for the window manager: a new window gets its frame.
void tst_WindowHiding::initTestCase()
{
    QTRY_VERIFY_WITH_TIMEOUT(
        [] {
            QWidget window;
            window.show();
            return QTest::qWaitFor([&] { return window.frameGeometry() != window.geometry(); }, 500);
        }(),
        20'000);
}

/// As a program of the desktop does.
void tst_WindowHiding::_minimize() const
{
    QVERIFY(XServer::act({"windowminimize", QString::number(m_window->winId())}));
}
#else
void tst_WindowHiding::_minimize() const
{
    m_window->showMinimized();
}
#endif

void tst_WindowHiding::windowCanHideAtFirst()
{
    QVERIFY(windowCanHide(*m_window));
    setWindowCanHide(*m_window, false);
    setWindowCanHide(*m_window, false);
    QVERIFY(!windowCanHide(*m_window));
    setWindowCanHide(*m_window, true);
    QVERIFY(windowCanHide(*m_window));
}

void tst_WindowHiding::minimizedWindowComesBack()
{
    setWindowCanHide(*m_window, false);
    QSignalSpy states(m_window->windowHandle(), &QWindow::windowStateChanged);
    _minimize();
    QTRY_VERIFY(states.size() >= 2);
    QTRY_VERIFY(!m_window->isMinimized());
    QTRY_VERIFY(m_window->windowHandle()->isExposed());
}

void tst_WindowHiding::windowThatIsMinimizedAlreadyComesBack()
{
    _minimize();
    QTRY_VERIFY(m_window->isMinimized());
    setWindowCanHide(*m_window, false);
    QTRY_VERIFY(!m_window->isMinimized());
}

void tst_WindowHiding::windowThatMayHideStaysMinimized()
{
    setWindowCanHide(*m_window, false);
    setWindowCanHide(*m_window, true);
    _minimize();
    QTRY_VERIFY(m_window->isMinimized());
    QCoreApplication::processEvents();
    QVERIFY(m_window->isMinimized());
}

void tst_WindowHiding::applicationMayCloseIt()
{
    setWindowCanHide(*m_window, false);
    QVERIFY(m_window->close());
    QVERIFY(!m_window->isVisible());
}

void tst_WindowHiding::quitIsNotHeldUp()
{
    setWindowCanHide(*m_window, false);
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    QCOMPARE(QCoreApplication::exec(), 0); // returns
    QVERIFY(!m_window->isVisible());
}

int main(int argc, char **argv)
{
#ifdef QW_TEST_ON_X
    const XServer server;
    QProcess manager;
    manager.start("openbox", {"--sm-disable"});
    if (!server.isRunning() || !manager.waitForStarted())
        qFatal("There is no desktop");
#endif
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    tst_WindowHiding test;
    const int failures = QTest::qExec(&test, argc, argv);
#ifdef QW_TEST_ON_X
    manager.terminate();
    manager.waitForFinished();
#endif
    return failures;
}

#include "tst_WindowHiding.moc"
