#pragma once

#include "RecordingFormats.h"
#include "TitleFolders.h"

#include <QWPlatform/network/transfers/UrlDownload.h>
#include <QWUtilities/qwutilities_private.h>

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <optional>

class QWVeskDevice;

namespace qw
{

/// What a recorder tells of one take. What it does not tell, or tells as something else than it should be, is empty: a
/// null text, an invalid date, zero, no list, false.
struct RecordingState
{
    QString title;
    QString filename; ///< The recorder's own name for the take.
    QDateTime creationDate;
    QDateTime modificationDate;
    quint64 fileSize = 0;               ///< Bytes.
    double length = 0;                  ///< Seconds; a recorder may tell any number, and "not a number".
    quint32 channels = 0;               ///< How many.
    quint32 quality = 0;                ///< 0 high, 1 medium, 2 low.
    std::optional<QStringList> formats; ///< Codes of compressed formats.
    bool locked = false;                ///< On the recorder.
    QString keywords;                   ///< Free text; the search looks here.
};

} // namespace qw

/// One take on a recorder. It is made where the recorder's list is read, on any thread; from then on everything but
/// what belongs to its download stays as it is. Downloads itself: main thread.
class QWUTILITIES_TEST_EXPORT QWVeskRecording : private platform::UrlDownloadObserver,
                                                public std::enable_shared_from_this<QWVeskRecording>
{
public:
    /// @p state is an entry of the recorder's list. Any thread.
    static std::shared_ptr<QWVeskRecording> recordingWithStateDevice(const QVariantMap &state,
                                                                     std::weak_ptr<QWVeskDevice> device);

    QWVeskRecording(qw::RecordingState state, std::weak_ptr<QWVeskDevice> device);
    ~QWVeskRecording() override; ///< Cancels a download.
    QWVeskRecording(const QWVeskRecording &) = delete;
    QWVeskRecording &operator=(const QWVeskRecording &) = delete;

    /// The recorder that listed it; null once that has gone. Who downloads holds it.
    std::shared_ptr<QWVeskDevice> device() const { return m_device.lock(); }

    const QString &title() const { return m_state.title; }
    const QString &filename() const { return m_state.filename; }
    const QDateTime &creationDate() const { return m_state.creationDate; }
    const QDateTime &modificationDate() const { return m_state.modificationDate; }
    quint64 fileSize() const { return m_state.fileSize; }
    double length() const { return m_state.length; }
    quint32 channels() const { return m_state.channels; }
    quint32 quality() const { return m_state.quality; }
    QStringList formats() const { return m_state.formats.value_or(QStringList()); }
    bool locked() const { return m_state.locked; }
    const QString &keywords() const { return m_state.keywords; }

    /// Whether the recorder told formats() at all.
    bool hasFormats() const { return m_state.formats.has_value(); }

    /// The compressed formats among formats().
    qw::RecordingFormats::Mask formatMask() const { return m_formatMask; }

    /// The value named by @p key, which is the name of an accessor ("fileSize"); invalid where the recorder told no
    /// text, date or list, and for other keys.
    QVariant valueForKey(const QString &key) const;

    /// The path that the last download was asked to write, also if a free name was taken; "" before.
    const QString &downloadPath() const { return m_downloadPath; }

    /// Bytes, from the response; the largest number while the server has not told.
    quint64 downloadSize() const { return m_downloadSize; }

    /// Bytes received so far.
    quint64 downloaded() const { return m_downloaded; }

    bool isDownloading() const { return m_download != nullptr; }

    /// Starts to download the take as @p format (a code) into @p folder (a real path). Its title is the file's name, as
    /// it stands: a "/" in it names folders below, which are made. A title that would lead out of the folder, an
    /// address that cannot be and a folder that cannot be made are failed downloads. The recorder's browser hears what
    /// becomes of it, never before the call has returned.
    void downloadToAs(const QString &folder, const QString &format);

    /// Ends the download, if there is one; no file and no folder made for it is left, and nobody hears of it.
    void cancelDownload();

private:
    QString _preparePlace(const QString &folder, const QUrl &url);
    QUrl _url(const QString &format) const;
    void downloadDidReceiveResponse(qint64 expectedLength) override;
    void downloadDidReceiveDataOfLength(qint64 length) override;
    void downloadDidFinish() override;
    void downloadDidFailWithError(const QString &localizedDescription) override;

    std::weak_ptr<QWVeskDevice> m_device;
    qw::RecordingState m_state;
    qw::RecordingFormats::Mask m_formatMask;
    qw::TitleFolders m_folders; ///< For the download that runs.
    std::unique_ptr<platform::UrlDownload> m_download;
    QString m_downloadPath;
    quint64 m_downloadSize = 0;
    quint64 m_downloaded = 0;
};
