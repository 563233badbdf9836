#pragma once

#include <QWPlatform/appkit/toolbar/ToolbarDelegate.h>
#include <QWPlatform/appkit/web/BrowserLinks.h>
#include <QWPlatform/network/transfers/UrlDownload.h>
#include <QWUtilities/qwutilities_export.h>

#include <QObject>

class QLabel;
class QProgressBar;
class QPushButton;
class QUrl;
class QWidget;

namespace platform
{
class Panel;
class Toolbar;
class WebView;
} // namespace platform

/// Shows the host's manual, its legal text and its acknowledgements, and keeps the manual up to date from the support
/// site. One per System, kept once made; closing the window only hides it. Main thread.
class QWUTILITIES_EXPORT QWManual : public QObject,
                                    public platform::ToolbarDelegate,
                                    public platform::UrlDownloadObserver
{
    Q_OBJECT

public:
    static QWManual &manual();

    /// Each of these needs a QWApplication and the interface file "QWManual"; without, nothing opens.
    static void openManual();
    static void openLegal();
    static void openAcknowledgements();

    /// True when the host carries a manual of its own ("Manual.zip").
    static bool appUsesQWManual();

    ~QWManual() override;

    Q_INVOKABLE void back(QObject *sender = nullptr);
    Q_INVOKABLE void forward(QObject *sender = nullptr);
    Q_INVOKABLE void home(QObject *sender = nullptr);
    Q_INVOKABLE void print(QObject *sender = nullptr);
    Q_INVOKABLE void printToPDF(QObject *sender = nullptr);
    Q_INVOKABLE void legal(QObject *sender = nullptr);
    Q_INVOKABLE void acknowledgements(QObject *sender = nullptr);
    Q_INVOKABLE void stopProgress(QObject *sender = nullptr);

    platform::Panel *window() const { return m_window; }                   ///< Null before the first opening.
    platform::WebView *contentView() const { return m_contentView.get(); } ///< Null before the first opening.

    QStringList toolbarAllowedItemIdentifiers(platform::Toolbar &toolbar) override;
    QStringList toolbarDefaultItemIdentifiers(platform::Toolbar &toolbar) override;
    std::unique_ptr<platform::ToolbarItem>
    toolbarItemForItemIdentifier(platform::Toolbar &toolbar, const QString &identifier, bool willBeInserted) override;
    bool validateToolbarItem(platform::ToolbarItem &item) override;

    void downloadDidReceiveResponse(qint64 expectedLength) override;
    void downloadDidReceiveDataOfLength(qint64 length) override;
    void downloadDidFinish() override;
    void downloadDidFailWithError(const QString &localizedDescription) override;

protected:
    QWManual();

private:
    void _openManual();
    bool _loadNib();
    void awakeFromNib();
    void _makeContentView(QWidget &place);
    void _makeToolbar();
    void _makeShortcuts();
    bool _prepareManual();
    bool _mayUse(const QString &identifier) const;
    void _unzipToDirectory(const QString &archive, const QString &directory) const;
    void checkVersion();
    void newVersionAvailable();
    void _showProgress(bool shows);
    void savePanelDidEnd(int returnCode, const QString &path);
    void printDidFinish(bool ok);

    QString m_manualPath;
    QString m_manualIndexPath;
    bool m_found = false; ///< The index page was there when the window was first opened; not asked again.
    std::unique_ptr<QWidget> m_nib;
    platform::Panel *m_window = nullptr;
    platform::BrowserLinks m_browserLinks;
    std::unique_ptr<platform::WebView> m_contentView;
    std::unique_ptr<platform::UrlDownload> m_downloader;
    QLabel *m_progressText = nullptr;
    QProgressBar *m_progressBar = nullptr;
    QPushButton *m_progressStopButton = nullptr;
    quint64 m_downloadSize = 0; ///< In bytes; without a length the largest number, which keeps the bar near zero.
    quint64 m_downloaded = 0;   ///< In bytes.
    platform::Toolbar *m_toolbar = nullptr;
};
