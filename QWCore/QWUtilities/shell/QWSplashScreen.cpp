#include "QWSplashScreen.h"

#include "QWUtilities/shell/panels/BorderlessWindow.h"
#include "QWUtilities/shell/panels/DisplayVersion.h"
#include "QWUtilities/shell/panels/QWSplashScreenContentView.h"
#include "QWUtilities/shell/panels/ShellInterface.h"

#include <QWBase/QWApplication.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QLabel>
#include <QThread>
#include <QWindow>

using platform::System;

namespace
{
/// The main thread is in the middle of its work: nothing but the window system may be heard.
void pump()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers |
                                    QEventLoop::X11ExcludeTimers);
}

/// A window is not painted before the window system has exposed it.
void waitUntilExposed(const QWidget &window)
{
    constexpr int limit = 500;
    const QDeadlineTimer deadline(limit);
    for (pump(); !window.windowHandle()->isExposed() && !deadline.hasExpired(); pump())
        QThread::msleep(1);
}
} // namespace

class Q_DECL_HIDDEN QWSplashScreen::Private
{
public:
    explicit Private(QWSplashScreen &owner);

    void open();
    void close();
    void _setAction(const QString &action);
    bool _isVisible() const;

    std::unique_ptr<QWidget> m_nib;                     ///< Holds the view until the window takes it over.
    QWSplashScreenContentView *m_contentView = nullptr; ///< Null when the interface file is not complete.
    QLabel *m_applicationNameText = nullptr;
    QLabel *m_versionText = nullptr;
    QLabel *m_copyrightText = nullptr;
    QLabel *m_actionText = nullptr;
    std::unique_ptr<qw::BorderlessWindow> m_window;

private:
    void awakeFromNib();
    void _makeWindow();
    void animationDidStopFinished();
    void _closeWindow();
};

QWSplashScreen &QWSplashScreen::splashScreen()
{
    return System::current().shared<QWSplashScreen>([] { return new QWSplashScreen; });
}

void QWSplashScreen::setAction(const QString &action)
{
    const QWApplication *application = QWApplication::sharedApplication();
    if (application && application->usesSplashScreen())
        splashScreen().d->_setAction(action);
}

bool QWSplashScreen::isVisible()
{
    const auto *splash = System::current().sharedIfMade<QWSplashScreen>();
    return splash && splash->d->_isVisible();
}

QWSplashScreen::QWSplashScreen()
    : d(std::make_unique<Private>(*this))
{
}

QWSplashScreen::~QWSplashScreen() = default;

QWSplashScreen::Private::Private(QWSplashScreen &owner)
{
    platform::InterfaceFile nib("QWSplashScreen", qw::shellBundle(), owner);
    nib.connectOutlet("contentView", m_contentView);
    nib.connectOutlet("applicationNameText", m_applicationNameText);
    nib.connectOutlet("versionText", m_versionText);
    nib.connectOutlet("copyrightText", m_copyrightText);
    nib.connectOutlet("actionText", m_actionText);
    if (!nib.isComplete())
        return;
    m_nib = nib.takeWidget();
    awakeFromNib();
}

void QWSplashScreen::Private::awakeFromNib()
{
    m_applicationNameText->setText(qw::applicationName());
    m_versionText->setText(qw::displayVersionOfHost());
    m_copyrightText->setText(qw::copyrightLine());
}

void QWSplashScreen::open()
{
    d->open();
}

void QWSplashScreen::Private::open()
{
    if (_isVisible() || !m_contentView)
        return;
    if (!m_window)
        _makeWindow();
    m_window->setWindowTitle(m_applicationNameText->text());
    m_window->center();
    m_window->makeKeyAndOrderFront();
    waitUntilExposed(*m_window);
    m_window->repaint();
    pump();
}

void QWSplashScreen::Private::_makeWindow()
{
    m_window = std::make_unique<qw::BorderlessWindow>(std::move(m_nib), m_contentView);
    QObject::connect(m_window.get(), &qw::BorderlessWindow::animationDidStop, [this] { animationDidStopFinished(); });
}

void QWSplashScreen::close()
{
    d->close();
}

void QWSplashScreen::Private::close()
{
    if (m_window && qw::BorderlessWindow::supportsAnimator())
        m_window->animateOpacity(0);
    else
        _closeWindow();
}

void QWSplashScreen::Private::animationDidStopFinished()
{
    if (m_window->windowOpacity() == 0)
        _closeWindow();
}

/// Ends with the splash screen, and so with this.
void QWSplashScreen::Private::_closeWindow()
{
    if (m_window)
        m_window->close();
    System::current().release<QWSplashScreen>();
}

void QWSplashScreen::Private::_setAction(const QString &action)
{
    if (!m_contentView)
        return;
    m_actionText->setText(platform::formatted(platform::localized("%@..."), {action}));
    if (!_isVisible())
        return;
    m_actionText->repaint();
    pump();
}

bool QWSplashScreen::Private::_isVisible() const
{
    return m_window && m_window->isVisible();
}

QWidget *QWSplashScreen::window() const
{
    return d->m_window.get();
}
