#include "ManualUpdate.h"

#include "ManualFolder.h"
#include "ManualVersion.h"

#include <QWBase/QWApplication.h>
#include <QWBase/QWError.h>
#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/appkit/InterfaceFile.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/machine/SystemServices.h>

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>

#include <algorithm>

using platform::localized;
using platform::System;
using platform::SystemServices;

namespace qw
{

namespace
{
constexpr int barSteps = 1000; ///< Of the whole progress bar.

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

/// "" without a folder for it, of which the user was told.
QString downloadPath()
{
    const QString folder = QWApplication::sharedApplication()->tempDirectory();
    return folder.isEmpty() ? QString() : folder + "/Manual.zip";
}
} // namespace

ManualUpdate::ManualUpdate(ManualFolder &folder)
    : m_folder(folder)
{
}

ManualUpdate::~ManualUpdate() = default;

void ManualUpdate::connectOutlets(platform::InterfaceFile &nib)
{
    nib.connectOutlet("progressText", m_progressText);
    nib.connectOutlet("progressBar", m_progressBar);
    nib.connectOutlet("progressStopButton", m_progressStopButton);
}

void ManualUpdate::showProgress(bool shows)
{
    if (!m_progressText)
        return;
    const std::initializer_list<QWidget *> controls{m_progressText, m_progressBar, m_progressStopButton};
    for (QWidget *control : controls) {
        QSizePolicy policy = control->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        control->setSizePolicy(policy);
        control->setVisible(shows);
    }
}

void ManualUpdate::checkVersion()
{
    const System &system = System::current();
    const QUrl question(system.locations().supportSite() + "/support/manual_version.php?appCode=" + applicationCode() +
                        "&version=" + majorVersion());
    auto work = [self = QPointer(this), loader = &system.urlLoader(), question,
                 index = system.locations().mapped(m_folder.indexPath())]() -> std::function<void()> {
        if (!isNewerManualOffered(*loader, question, index))
            return {};
        return [self] {
            if (self)
                self->newVersionAvailable();
        };
    };
    system.backgroundWork().start(work);
}

void ManualUpdate::newVersionAvailable()
{
    const platform::Alert offer{.messageText = localized("A newer version of the manual is available"),
                                .informativeText = localized("Would you like to download the update now?"),
                                .buttons = {localized("Download"), localized("Later")}};
    // The answer may come before the window system has made the new window the active one, above which alerts stand.
    if (m_progressText->window()->isVisible())
        QApplication::setActiveWindow(m_progressText->window());
    if (platform::runAlert(offer) != 0)
        return;
    if (const QString archive = downloadPath(); !archive.isEmpty())
        _download(archive);
}

void ManualUpdate::_download(const QString &archive)
{
    const System &system = System::current();
    const QUrl url(system.locations().supportSite() + "/support/manuals/" + applicationCode().toLower() + "/" +
                   majorVersion() + "/Manual.zip");
    m_downloader = SystemServices::current().urlDownloads->start(
        {.url = url, .destination = system.locations().mapped(archive), .overwrite = true}, *this);
    m_progressText->setText(localized("Downloading update..."));
    m_progressBar->setRange(0, barSteps);
    m_progressBar->setValue(0);
    showProgress(true);
}

void ManualUpdate::downloadDidReceiveResponse(qint64 expectedLength)
{
    m_downloadSize = static_cast<quint64>(expectedLength);
    m_downloaded = 0;
}

void ManualUpdate::downloadDidReceiveDataOfLength(qint64 length)
{
    m_downloaded += static_cast<quint64>(length);
    const double fraction =
        static_cast<double>(m_downloaded) / static_cast<double>(std::max<quint64>(m_downloadSize, 1));
    m_progressBar->setValue(static_cast<int>(std::min(fraction, 1.0) * barSteps));
}

void ManualUpdate::downloadDidFinish()
{
    m_downloader.reset();
    m_progressText->setText(localized("Installing update..."));
    m_progressBar->setRange(0, 0);
    m_progressText->repaint(); // Unpacking keeps the main thread.
    QWError error;
    const bool isEmptied = m_folder.empty(&error);
    if (const QString archive = downloadPath(); !archive.isEmpty())
        m_folder.unzip(archive);
    showProgress(false);
    Q_EMIT installed();
    if (!isEmptied)
        error.alert();
}

void ManualUpdate::downloadDidFailWithError(const QString &localizedDescription)
{
    m_downloader.reset();
    platform::runAlert({.messageText = localized("The downloading of the manual failed"),
                        .informativeText = localizedDescription,
                        .buttons = {}});
    showProgress(false);
}

void ManualUpdate::stop()
{
    if (m_downloader)
        m_downloader->cancel();
    m_downloader.reset();
    showProgress(false);
}

} // namespace qw
