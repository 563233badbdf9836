#include "QWAboutPanel.h"

#include "QWManual.h"
#include "QWUtilities/shell/panels/BorderlessWindow.h"
#include "QWUtilities/shell/panels/DisplayVersion.h"
#include "QWUtilities/shell/panels/QWAboutPanelContentView.h"
#include "QWUtilities/shell/panels/ShellInterface.h"

#include <QWBase/QWButton.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>

#include <QKeyEvent>
#include <QLabel>

using platform::System;

namespace
{
constexpr int quietRoundBezel = 1200;
}

QWAboutPanel &QWAboutPanel::aboutPanel()
{
    return System::current().shared<QWAboutPanel>([] { return new QWAboutPanel; });
}

void QWAboutPanel::open()
{
    aboutPanel()._open();
}

QWAboutPanel::QWAboutPanel()
{
    platform::InterfaceFile nib("QWAboutPanel", qw::shellBundle(), *this);
    nib.connectOutlet("view", m_view);
    nib.connectOutlet("appNameText", m_appNameText);
    nib.connectOutlet("versionText", m_versionText);
    nib.connectOutlet("buildText", m_buildText);
    nib.connectOutlet("additionalText", m_additionalText);
    nib.connectOutlet("copyrightText", m_copyrightText);
    nib.connectOutlet("legalButton", m_legalButton);
    nib.connectOutlet("acknowledgementsButton", m_acknowledgementsButton);
    if (!nib.isComplete())
        return;
    m_nib = nib.takeWidget();
    awakeFromNib();
}

QWAboutPanel::~QWAboutPanel() = default;

void QWAboutPanel::awakeFromNib()
{
    const platform::Bundle &host = System::current().mainBundle();
    m_appNameText->setText(qw::applicationName());
    m_versionText->setText(qw::displayVersionOfHost());
    m_buildText->setText(host.objectForInfoDictionaryKey("CFBundleVersion").toString());
    m_copyrightText->setText(qw::copyrightLine());
    m_legalButton->setBezelStyle(quietRoundBezel);
    m_acknowledgementsButton->setBezelStyle(quietRoundBezel);
}

void QWAboutPanel::_makeWindow()
{
    m_window = std::make_unique<qw::BorderlessWindow>(std::move(m_nib), m_view);
    m_window->setWindowTitle(platform::formatted(platform::localized("About %@"), {m_appNameText->text()}));
    m_window->installEventFilter(this);
    connect(m_window.get(), &qw::BorderlessWindow::animationDidStop, this, &QWAboutPanel::animationDidStopFinished);
}

void QWAboutPanel::_open()
{
    if (!m_view || (m_window && m_window->isVisible()))
        return;
    if (!m_window)
        _makeWindow();
    m_additionalText->clear();
    m_additionalText->setTextInteractionFlags(Qt::NoTextInteraction);
    m_window->center();
    const bool fades = qw::BorderlessWindow::supportsAnimator();
    m_window->setWindowOpacity(fades ? 0 : 1);
    m_window->makeKeyAndOrderFront();
    m_view->setFocus(); // no button is offered before the user asks for one
    if (fades)
        m_window->animateOpacity(1);
}

void QWAboutPanel::close()
{
    if (!m_window)
        return;
    if (qw::BorderlessWindow::supportsAnimator())
        m_window->animateOpacity(0);
    else
        m_window->close();
}

void QWAboutPanel::animationDidStopFinished()
{
    if (m_window->windowOpacity() == 0)
        m_window->close();
}

void QWAboutPanel::openLegal(QObject *)
{
    QWManual::openLegal();
    close();
}

void QWAboutPanel::openAcknowledgements(QObject *)
{
    QWManual::openAcknowledgements();
    close();
}

QWidget *QWAboutPanel::window() const
{
    return m_window.get();
}

bool QWAboutPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !static_cast<QKeyEvent *>(event)->matches(QKeySequence::Cancel))
        return QObject::eventFilter(watched, event);
    close();
    return true;
}
