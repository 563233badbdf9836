#pragma once

#include <QWPlatform/network/transfers/UrlDownload.h>

#include <QObject>

#include <memory>

class QLabel;
class QProgressBar;
class QPushButton;

namespace platform
{
class InterfaceFile;
}

namespace qw
{

class ManualFolder;

/// Asks the support site for a newer manual, offers it to the user, downloads and installs it, and tells of it in the
/// manual's window. Main thread.
class ManualUpdate : public QObject, private platform::UrlDownloadObserver
{
    Q_OBJECT

public:
    /// @p folder is not owned and must live as long as this.
    explicit ManualUpdate(ManualFolder &folder);
    ~ManualUpdate() override;

    /// Takes the controls that tell of the progress from the manual's interface file. They must live as long as this.
    void connectOutlets(platform::InterfaceFile &nib);

    /// Shows or hides those controls, whose room stays; does nothing before there are any.
    void showProgress(bool shows);

    /// Asks in the background, and then, in the event loop, the user; silent where there is no answer.
    void checkVersion();

    /// Ends the download, if there is one; the manual stays as it is.
    void stop();

Q_SIGNALS:
    /// The folder holds what was downloaded.
    void installed();

private:
    void newVersionAvailable();
    void _download(const QString &archive);

    void downloadDidReceiveResponse(qint64 expectedLength) override;
    void downloadDidReceiveDataOfLength(qint64 length) override;
    void downloadDidFinish() override;
    void downloadDidFailWithError(const QString &localizedDescription) override;

    ManualFolder &m_folder;
    std::unique_ptr<platform::UrlDownload> m_downloader;
    QLabel *m_progressText = nullptr;
    QProgressBar *m_progressBar = nullptr;
    QPushButton *m_progressStopButton = nullptr;
    quint64 m_downloadSize = 0; ///< In bytes; without a length the largest number, which keeps the bar near zero.
    quint64 m_downloaded = 0;   ///< In bytes.
};

} // namespace qw
