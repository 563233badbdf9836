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

QWSplashScreen &QWSplashScreen::splashScreen()
{
    return System::current().shared<QWSplashScreen>([] { return new QWSplashScreen; });
}

void QWSplashScreen::setAction(const QString &action)
{
    const QWApplication *application = QWApplication::sharedApplication();
    if (application && application->usesSplashScreen())
        splashScreen()._setAction(action);
}

bool QWSplashScreen::isVisible()
{
    const auto *splash = System::current().sharedIfMade<QWSplashScreen>();
    return splash && splash->_isVisible();
}

QWSplashScreen::QWSplashScreen()
{
    platform::InterfaceFile nib("QWSplashScreen", qw::shellBundle(), *this);
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

QWSplashScreen::~QWSplashScreen() = default;

void QWSplashScreen::awakeFromNib()
{
    m_applicationNameText->setText(qw::applicationName());
    m_versionText->setText(qw::displayVersionOfHost());
    m_copyrightText->setText(qw::copyrightLine());
}

void QWSplashScreen::open()
{
    if (_isVisible() || !m_contentView)
        return;
    if (!m_window)
        m_window = std::make_unique<qw::BorderlessWindow>(std::move(m_nib), m_contentView);
    m_window->setWindowTitle(m_applicationNameText->text());
    connect(m_window.get(), &qw::BorderlessWindow::animationDidStop, this, &QWSplashScreen::animationDidStopFinished,
            Qt::UniqueConnection);
    m_window->center();
    m_window->makeKeyAndOrderFront();
    waitUntilExposed(*m_window);
    m_window->repaint();
    pump();
}

void QWSplashScreen::close()
{
    if (m_window && qw::BorderlessWindow::supportsAnimator())
        m_window->animateOpacity(0);
    else
        _closeWindow();
}

void QWSplashScreen::animationDidStopFinished()
{
    if (m_window->windowOpacity() == 0)
        _closeWindow();
}

void QWSplashScreen::_closeWindow()
{
    if (m_window)
        m_window->close();
    System::current().release<QWSplashScreen>();
}

void QWSplashScreen::_setAction(const QString &action)
{
    if (!m_contentView)
        return;
    m_actionText->setText(platform::formatted(platform::localized("%@..."), {action}));
    if (!_isVisible())
        return;
    m_actionText->repaint();
    pump();
}

bool QWSplashScreen::_isVisible() const
{
    return m_window && m_window->isVisible();
}

QWidget *QWSplashScreen::window() const
{
    return m_window.get();
}
