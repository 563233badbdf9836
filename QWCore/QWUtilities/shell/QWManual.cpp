#include "QWManual.h"

#include "QWUtilities/shell/manual/ManualFolder.h"
#include "QWUtilities/shell/manual/ManualToolbar.h"
#include "QWUtilities/shell/manual/ManualUpdate.h"
#include "QWUtilities/shell/panels/ShellInterface.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWFile.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/WebView.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/web/BrowserLinks.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QPointer>
#include <QVBoxLayout>

using platform::formatted;
using platform::localized;
using platform::System;

namespace
{
Q_LOGGING_CATEGORY(manualLog, "quorwell.manual")

void tell(const QString &what, const QString &why)
{
    platform::runAlert({.messageText = what, .informativeText = why, .buttons = {}});
}

void tellOfUnwrittenPdf(const QString &path)
{
    qCWarning(manualLog) << "The manual could not be written to" << path;
    tell(localized("The manual could not be saved as a PDF"),
         formatted(
             localized("“%@” could not be written. The disk may be full, or you may not be allowed to write there."),
             {QFileInfo(path).fileName()}));
}

void printDidFinish(bool ok)
{
    if (!ok)
        tell(localized("The manual could not be printed"),
             localized("The printer did not take the pages. It may be switched off, or not connected."));
}

QString manualTitle()
{
    return formatted(localized("%@ Manual"), {qw::applicationName()});
}
} // namespace

class Q_DECL_HIDDEN QWManual::Private
{
public:
    explicit Private(QWManual &owner);

    void _openManual();
    void printToPDF();
    void legal();

    QWManual &m_owner;
    qw::ManualFolder m_folder;
    qw::ManualToolbar m_toolbar;
    std::unique_ptr<QWidget> m_nib;
    platform::Panel *m_window = nullptr;
    platform::BrowserLinks m_browserLinks;
    std::unique_ptr<platform::WebView> m_contentView;
    qw::ManualUpdate m_update;

private:
    bool _loadNib();
    void _makeContentView(QWidget &place);
    void awakeFromNib();
    void savePanelDidEnd(int returnCode, const QString &path);
};

QWManual &QWManual::manual()
{
    return System::current().shared<QWManual>([] { return new QWManual; });
}

void QWManual::openManual()
{
    manual().d->_openManual();
}

void QWManual::openLegal()
{
    openManual();
    manual().legal();
}

void QWManual::openAcknowledgements()
{
    openManual();
    manual().acknowledgements();
}

bool QWManual::appUsesQWManual()
{
    return !System::current().mainBundle().pathForResource("Manual", "zip").isEmpty();
}

QWManual::QWManual()
    : d(std::make_unique<Private>(*this))
{
}

QWManual::~QWManual() = default;

QWManual::Private::Private(QWManual &owner)
    : m_owner(owner)
    , m_toolbar(owner)
    , m_update(m_folder)
{
    QObject::connect(&m_update, &qw::ManualUpdate::installed, &owner, [&owner] { owner.home(); });
}

void QWManual::Private::_openManual()
{
    if (!m_window) {
        if (!QWApplication::sharedApplication() || !_loadNib())
            return;
        const bool found = QWFile::fileExistsAtPath(m_folder.indexPath());
        if (found)
            m_owner.home();
        m_toolbar.setFound(found);
    }
    platform::makeKeyAndOrderFront(*m_window);
}

bool QWManual::Private::_loadNib()
{
    platform::InterfaceFile nib("QWManual", qw::shellBundle(), m_owner);
    QWidget *place = nullptr;
    nib.connectOutlet("window", m_window);
    nib.connectOutlet("contentView", place);
    m_update.connectOutlets(nib);
    if (!nib.isComplete())
        return false;
    m_nib = nib.takeWidget();
    _makeContentView(*place);
    awakeFromNib();
    return true;
}

void QWManual::Private::_makeContentView(QWidget &place)
{
    auto *const column = new QVBoxLayout(&place);
    column->setContentsMargins({});
    m_contentView = System::current().webViews().make(&place);
    column->addWidget(m_contentView->widget());
    QObject::connect(m_contentView.get(), &platform::WebView::printFinished, &m_owner, &printDidFinish,
                     Qt::QueuedConnection);
    // Pages of the web belong into the user's browser; everything else stays in the panel.
    m_contentView->setPolicy(
        [this](const platform::WebView::Navigation &navigation) { return !m_browserLinks.take(navigation); });
}

void QWManual::Private::awakeFromNib()
{
    m_toolbar.addToWindow(*m_window, *m_contentView);
    m_update.showProgress(false);
    if (!m_folder.prepare())
        return;
    m_update.checkVersion();
    m_window->setWindowTitle(manualTitle());
    platform::centerWindow(*m_window, m_window->size());
    platform::constrainToScreen(*m_window);
}

void QWManual::back(QObject *)
{
    if (d->m_contentView)
        d->m_contentView->goBack();
}

void QWManual::forward(QObject *)
{
    if (d->m_contentView)
        d->m_contentView->goForward();
}

void QWManual::home(QObject *)
{
    if (d->m_contentView)
        d->m_contentView->load(d->m_folder.indexUrl());
}

void QWManual::print(QObject *)
{
    if (d->m_contentView)
        d->m_contentView->print();
}

void QWManual::legal(QObject *)
{
    if (d->m_contentView)
        d->legal();
}

void QWManual::Private::legal()
{
    QFile file(qw::shellBundle().pathForResource("EULA", "html"));
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QString text = QString::fromUtf8(file.readAll()).replace("%CFBundleName%", qw::applicationName());
    m_contentView->loadHtml(text, QUrl());
}

void QWManual::acknowledgements(QObject *)
{
    if (d->m_contentView)
        d->m_contentView->load(d->m_folder.acknowledgementsUrl());
}

void QWManual::printToPDF(QObject *)
{
    if (d->m_contentView)
        d->printToPDF();
}

void QWManual::Private::printToPDF()
{
    const platform::SavePanelRequest request{.window = m_window,
                                             .title = localized("Save To PDF"),
                                             .suggestedName = manualTitle(),
                                             .requiredFileType = "pdf"};
    System::current().filePanels().beginSavePanel(
        request, [this](int code, const QString &path) { savePanelDidEnd(code, path); });
}

void QWManual::Private::savePanelDidEnd(int returnCode, const QString &path)
{
    if (returnCode != platform::FilePanels::OK)
        return;
    m_contentView->printToPdf(path, [path, manual = QPointer(&m_owner)](bool ok) {
        if (!ok && manual) // from the event loop: an alert runs one of its own, which the view's engine is not made for
            QMetaObject::invokeMethod(
                manual, [path] { tellOfUnwrittenPdf(path); }, Qt::QueuedConnection);
    });
}

void QWManual::stopProgress(QObject *)
{
    d->m_update.stop();
}

platform::Panel *QWManual::window() const
{
    return d->m_window;
}

platform::WebView *QWManual::contentView() const
{
    return d->m_contentView.get();
}
