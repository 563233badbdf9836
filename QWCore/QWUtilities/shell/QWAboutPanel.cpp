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

/// Filters the window's events: Escape closes.
class Q_DECL_HIDDEN QWAboutPanel::Private : public QObject
{
public:
    explicit Private(QWAboutPanel &owner);

    void _open();
    void close();

    bool eventFilter(QObject *watched, QEvent *event) override;

    std::unique_ptr<QWidget> m_nib; ///< Holds the view until the window takes it over.
    std::unique_ptr<qw::BorderlessWindow> m_window;
    QWAboutPanelContentView *m_view = nullptr; ///< Null when the interface file is not complete.
    QLabel *m_appNameText = nullptr;
    QLabel *m_versionText = nullptr;
    QLabel *m_buildText = nullptr;
    QLabel *m_additionalText = nullptr;
    QLabel *m_copyrightText = nullptr;
    QWButton *m_legalButton = nullptr;
    QWButton *m_acknowledgementsButton = nullptr;

private:
    void awakeFromNib();
    void _makeWindow();
    void animationDidStopFinished();
};

QWAboutPanel &QWAboutPanel::aboutPanel()
{
    return System::current().shared<QWAboutPanel>([] { return new QWAboutPanel; });
}

void QWAboutPanel::open()
{
    aboutPanel().d->_open();
}

QWAboutPanel::QWAboutPanel()
    : d(std::make_unique<Private>(*this))
{
}

QWAboutPanel::~QWAboutPanel() = default;

QWAboutPanel::Private::Private(QWAboutPanel &owner)
{
    platform::InterfaceFile nib("QWAboutPanel", qw::shellBundle(), owner);
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

void QWAboutPanel::Private::awakeFromNib()
{
    const platform::Bundle &host = System::current().mainBundle();
    m_appNameText->setText(qw::applicationName());
    m_versionText->setText(qw::displayVersionOfHost());
    m_buildText->setText(host.objectForInfoDictionaryKey("CFBundleVersion").toString());
    m_copyrightText->setText(qw::copyrightLine());
    m_legalButton->setBezelStyle(quietRoundBezel);
    m_acknowledgementsButton->setBezelStyle(quietRoundBezel);
}

void QWAboutPanel::Private::_makeWindow()
{
    m_window = std::make_unique<qw::BorderlessWindow>(std::move(m_nib), m_view);
    m_window->setWindowTitle(platform::formatted(platform::localized("About %@"), {m_appNameText->text()}));
    m_window->installEventFilter(this);
    connect(m_window.get(), &qw::BorderlessWindow::animationDidStop, this, &Private::animationDidStopFinished);
}

void QWAboutPanel::Private::_open()
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
    d->close();
}

void QWAboutPanel::Private::close()
{
    if (!m_window)
        return;
    if (qw::BorderlessWindow::supportsAnimator())
        m_window->animateOpacity(0);
    else
        m_window->close();
}

void QWAboutPanel::Private::animationDidStopFinished()
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
    return d->m_window.get();
}

bool QWAboutPanel::Private::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !static_cast<QKeyEvent *>(event)->matches(QKeySequence::Cancel))
        return QObject::eventFilter(watched, event);
    close();
    return true;
}
