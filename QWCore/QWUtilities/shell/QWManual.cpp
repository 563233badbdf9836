#include "QWManual.h"

#include "QWUtilities/shell/manual/ManualVersion.h"
#include "QWUtilities/shell/panels/ShellInterface.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWError.h>
#include <QWBase/QWFile.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/WebView.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/processes/ChildProcesses.h>

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLoggingCategory>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>

using platform::formatted;
using platform::localized;
using platform::System;

namespace
{
Q_LOGGING_CATEGORY(manualLog, "quorwell.manual")

constexpr int barSteps = 1000; ///< Of the whole progress bar.

QString mapped(const QString &path)
{
    return System::current().locations().mapped(path);
}

QString applicationCode()
{
    const QWApplication *application = QWApplication::sharedApplication();
    return application ? application->code() : QString();
}

QString majorVersion()
{
    const QWApplication *application = QWApplication::sharedApplication();
    return QString::number(application ? application->majorVersion() : 0);
}

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

/// "" without a folder for it, of which the user was told.
QString downloadPath()
{
    const QString folder = QWApplication::sharedApplication()->tempDirectory();
    return folder.isEmpty() ? QString() : folder + "/Manual.zip";
}
} // namespace

QWManual &QWManual::manual()
{
    return System::current().shared<QWManual>([] { return new QWManual; });
}

void QWManual::openManual()
{
    manual()._openManual();
}

void QWManual::openLegal()
{
    manual()._openManual();
    manual().legal();
}

void QWManual::openAcknowledgements()
{
    manual()._openManual();
    manual().acknowledgements();
}

bool QWManual::appUsesQWManual()
{
    return !System::current().mainBundle().pathForResource("Manual", "zip").isEmpty();
}

QWManual::QWManual() = default;
QWManual::~QWManual() = default;

void QWManual::_openManual()
{
    if (!m_window) {
        if (!QWApplication::sharedApplication() || !_loadNib())
            return;
        if (QWFile::fileExistsAtPath(m_manualIndexPath)) {
            home();
            m_found = true;
        }
        m_toolbar->validateVisibleItems();
    }
    platform::makeKeyAndOrderFront(*m_window);
}

bool QWManual::_loadNib()
{
    platform::InterfaceFile nib("QWManual", qw::shellBundle(), *this);
    QWidget *place = nullptr;
    nib.connectOutlet("window", m_window);
    nib.connectOutlet("contentView", place);
    nib.connectOutlet("progressText", m_progressText);
    nib.connectOutlet("progressBar", m_progressBar);
    nib.connectOutlet("progressStopButton", m_progressStopButton);
    if (!nib.isComplete())
        return false;
    m_nib = nib.takeWidget();
    _makeContentView(*place);
    awakeFromNib();
    return true;
}

void QWManual::awakeFromNib()
{
    _makeToolbar();
    _makeShortcuts();
    _showProgress(false);
    if (!_prepareManual())
        return;
    checkVersion();
    m_window->setWindowTitle(formatted(localized("%@ Manual"), {qw::applicationName()}));
    platform::centerWindow(*m_window, m_window->size());
    platform::constrainToScreen(*m_window);
}

/// Makes sure that there is a manual folder, with the host's own manual when it holds none; false, after an alert, when
/// that cannot be.
bool QWManual::_prepareManual()
{
    QWError error;
    m_manualPath = QWApplication::sharedApplication()->supportDirectory() + "/Manual";
    if (!QWFile::createDirectoryAtPath(m_manualPath, &error)) {
        error.alert();
        return false;
    }
    m_manualIndexPath = m_manualPath + "/index.html";
    if (QWFile::fileExistsAtPath(m_manualIndexPath))
        return true;
    QWFile::makeAccessibleAtPath(m_manualPath);
    if (!QWFile::emptyDirectoryAtPath(m_manualPath, &error)) {
        error.alert();
        return false;
    }
    if (appUsesQWManual())
        _unzipToDirectory(System::current().mainBundle().pathForResource("Manual", "zip"), m_manualPath);
    return true;
}

void QWManual::_unzipToDirectory(const QString &archive, const QString &directory) const
{
    System::current().childProcesses().run(
        {.launchPath = "/usr/bin/unzip", .arguments = {"-q", mapped(archive), "-d", mapped(directory)}});
    QWFile::makeAccessibleAtPath(directory); // what an archive forbids could be neither read nor replaced
}

void QWManual::checkVersion()
{
    const System &system = System::current();
    const QUrl question(system.locations().supportSite() + "/support/manual_version.php?appCode=" + applicationCode() +
                        "&version=" + majorVersion());
    auto work = [self = QPointer(this), loader = &system.urlLoader(), question,
                 index = mapped(m_manualIndexPath)]() -> std::function<void()> {
        if (!qw::isNewerManualOffered(*loader, question, index))
            return {};
        return [self] {
            if (self)
                self->newVersionAvailable();
        };
    };
    system.backgroundWork().start(work);
}

void QWManual::newVersionAvailable()
{
    const platform::Alert offer{.messageText = localized("A newer version of the manual is available"),
                                .informativeText = localized("Would you like to download the update now?"),
                                .buttons = {localized("Download"), localized("Later")}};
    // The answer may come before the window system has made the new window the active one, above which alerts stand.
    if (m_window && m_window->isVisible())
        QApplication::setActiveWindow(m_window);
    if (platform::runAlert(offer) != 0)
        return;
    const QString archive = downloadPath();
    if (archive.isEmpty())
        return;
    const QUrl url(System::current().locations().supportSite() + "/support/manuals/" + applicationCode().toLower() +
                   "/" + majorVersion() + "/Manual.zip");
    m_downloader = System::current().urlDownloads().start(url, mapped(archive), *this);
    m_progressText->setText(localized("Downloading update..."));
    m_progressBar->setRange(0, barSteps);
    m_progressBar->setValue(0);
    _showProgress(true);
}

void QWManual::downloadDidReceiveResponse(qint64 expectedLength)
{
    m_downloadSize = static_cast<quint64>(expectedLength);
    m_downloaded = 0;
}

void QWManual::downloadDidReceiveDataOfLength(qint64 length)
{
    m_downloaded += static_cast<quint64>(length);
    const double fraction =
        static_cast<double>(m_downloaded) / static_cast<double>(std::max<quint64>(m_downloadSize, 1));
    m_progressBar->setValue(static_cast<int>(std::min(fraction, 1.0) * barSteps));
}

void QWManual::downloadDidFinish()
{
    m_downloader.reset();
    m_progressText->setText(localized("Installing update..."));
    m_progressBar->setRange(0, 0);
    m_progressText->repaint(); // Unpacking keeps the main thread.
    QWError error;
    QWFile::makeAccessibleAtPath(m_manualPath);
    const bool isEmptied = QWFile::emptyDirectoryAtPath(m_manualPath, &error);
    if (const QString archive = downloadPath(); !archive.isEmpty())
        _unzipToDirectory(archive, m_manualPath);
    _showProgress(false);
    home();
    if (!isEmptied)
        error.alert();
}

void QWManual::downloadDidFailWithError(const QString &localizedDescription)
{
    m_downloader.reset();
    tell(localized("The downloading of the manual failed"), localizedDescription);
    _showProgress(false);
}

void QWManual::stopProgress(QObject *)
{
    if (m_downloader)
        m_downloader->cancel();
    m_downloader.reset();
    _showProgress(false);
}

void QWManual::_showProgress(bool shows)
{
    if (!m_window)
        return;
    const std::initializer_list<QWidget *> controls{m_progressText, m_progressBar, m_progressStopButton};
    for (QWidget *control : controls) {
        QSizePolicy policy = control->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        control->setSizePolicy(policy);
        control->setVisible(shows);
    }
}

void QWManual::back(QObject *)
{
    if (m_contentView)
        m_contentView->goBack();
}

void QWManual::forward(QObject *)
{
    if (m_contentView)
        m_contentView->goForward();
}

void QWManual::home(QObject *)
{
    if (m_contentView)
        m_contentView->load(QUrl::fromLocalFile(mapped(m_manualIndexPath)));
}

void QWManual::print(QObject *)
{
    if (m_contentView)
        m_contentView->print();
}

void QWManual::legal(QObject *)
{
    QFile file(qw::shellBundle().pathForResource("EULA", "html"));
    if (!m_contentView || !file.open(QIODevice::ReadOnly))
        return;
    const QString text = QString::fromUtf8(file.readAll()).replace("%CFBundleName%", qw::applicationName());
    m_contentView->loadHtml(text, QUrl());
}

void QWManual::acknowledgements(QObject *)
{
    if (m_contentView)
        m_contentView->load(QUrl::fromLocalFile(mapped(m_manualPath + "/acknowledgements.html")));
}

void QWManual::printToPDF(QObject *)
{
    if (!m_contentView)
        return;
    const platform::SavePanelRequest request{.window = m_window,
                                             .title = localized("Save To PDF"),
                                             .suggestedName =
                                                 formatted(localized("%@ Manual"), {qw::applicationName()}),
                                             .requiredFileType = "pdf"};
    System::current().filePanels().beginSavePanel(
        request, [this](int code, const QString &path) { savePanelDidEnd(code, path); });
}

void QWManual::savePanelDidEnd(int returnCode, const QString &path)
{
    if (returnCode != platform::FilePanels::OK)
        return;
    m_contentView->printToPdf(path, [path, self = QPointer(this)](bool ok) {
        if (!ok && self) // from the event loop: an alert runs one of its own, which the view's engine is not made for
            QMetaObject::invokeMethod(
                self, [path] { tellOfUnwrittenPdf(path); }, Qt::QueuedConnection);
    });
}

void QWManual::printDidFinish(bool ok)
{
    if (!ok)
        tell(localized("The manual could not be printed"),
             localized("The printer did not take the pages. It may be switched off, or not connected."));
}
