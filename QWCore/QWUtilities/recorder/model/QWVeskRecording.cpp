#include "QWVeskRecording.h"

#include "FailedUrlDownload.h"
#include "QWVeskDevice.h"
#include "RecorderBrowser.h"
#include "RecordingListReader.h"

#include <QWBase/QWApplicationLog.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWPlatform/network/transfers/StrictUrl.h>

#include <QFileInfo>

#include <array>
#include <limits>

namespace
{
struct RecordingAccessor
{
    const char *key;
    QVariant (*value)(const QWVeskRecording &);
};

QVariant textOrNone(const QString &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

QVariant dateOrNone(const QDateTime &date)
{
    return date.isValid() ? QVariant(date) : QVariant();
}

using R = QWVeskRecording;
constexpr std::array<RecordingAccessor, 12> recordingAccessors{{
    {"title", [](const R &r) { return textOrNone(r.title()); }},
    {"filename", [](const R &r) { return textOrNone(r.filename()); }},
    {"creationDate", [](const R &r) { return dateOrNone(r.creationDate()); }},
    {"modificationDate", [](const R &r) { return dateOrNone(r.modificationDate()); }},
    {"fileSize", [](const R &r) { return QVariant(r.fileSize()); }},
    {"length", [](const R &r) { return QVariant(r.length()); }},
    {"channels", [](const R &r) { return QVariant(r.channels()); }},
    {"quality", [](const R &r) { return QVariant(r.quality()); }},
    {"formats", [](const R &r) { return r.hasFormats() ? QVariant(r.formats()) : QVariant(); }},
    {"locked", [](const R &r) { return QVariant(r.locked()); }},
    {"keywords", [](const R &r) { return textOrNone(r.keywords()); }},
    {"downloadPath", [](const R &r) { return textOrNone(r.downloadPath()); }},
}};

bool leavesItsFolder(const QString &title)
{
    QStringList folders = title.split(u'/');
    folders.removeLast(); // the file's name, which has an extension behind it
    return folders.contains(QStringLiteral(".."));
}
} // namespace

std::shared_ptr<QWVeskRecording> QWVeskRecording::recordingWithStateDevice(const QVariantMap &state,
                                                                           std::weak_ptr<QWVeskDevice> device)
{
    return std::make_shared<QWVeskRecording>(qw::RecordingListReader::stateOf(state), std::move(device));
}

QWVeskRecording::QWVeskRecording(qw::RecordingState state, std::weak_ptr<QWVeskDevice> device)
    : m_device(std::move(device))
    , m_state(std::move(state))
    , m_formatMask(m_state.formats ? qw::RecordingFormats::maskOf(*m_state.formats) : 0)
{
}

QWVeskRecording::~QWVeskRecording()
{
    cancelDownload();
}

QVariant QWVeskRecording::valueForKey(const QString &key) const
{
    for (const RecordingAccessor &accessor : recordingAccessors)
        if (key == QLatin1String(accessor.key))
            return accessor.value(*this);
    return {};
}

void QWVeskRecording::downloadToAs(const QString &folder, const QString &format)
{
    cancelDownload();
    m_downloadPath = folder + u'/' + m_state.title + u'.' + qw::RecordingFormats::extensionOf(format);
    m_downloadSize = std::numeric_limits<quint64>::max();
    m_downloaded = 0;
    const QUrl url = _url(format);
    const QString obstacle = _preparePlace(folder, url);
    m_download = obstacle.isEmpty() ? platform::SystemServices::current().urlDownloads->start(
                                          {.url = url, .destination = m_downloadPath, .overwrite = false}, *this)
                                    : qw::FailedUrlDownload::make(obstacle, *this);
}

/// Makes the folders that the title names below @p folder; what stands against it, for the user, or "".
QString QWVeskRecording::_preparePlace(const QString &folder, const QUrl &url)
{
    if (leavesItsFolder(m_state.title))
        return platform::localized("Its title leads out of the chosen folder.");
    if (!QFileInfo(folder).isDir()) // never made anew: it may lie on a disk that was taken out
        return platform::localized("The chosen folder is not there any more.");
    if (url.isValid() && !m_folders.make(folder, m_state.title)) // else the download itself fails
        return platform::localized("The folder that its title names cannot be made.");
    return {};
}

QUrl QWVeskRecording::_url(const QString &format) const
{
    const auto recorder = device();
    return platform::urlAsItStands((recorder ? recorder->address() : QString()) + u"/download?filename=" +
                                   m_state.filename + u"&format=" + format);
}

void QWVeskRecording::cancelDownload()
{
    m_download.reset();
    m_folders.removeEmpty();
}

/// download:didReceiveResponse:
void QWVeskRecording::downloadDidReceiveResponse(qint64 expectedLength)
{
    m_downloadSize = static_cast<quint64>(expectedLength); // -1, unknown, is the largest number: the bar stays near 0
    m_downloaded = 0;
}

/// download:didReceiveDataOfLength:
void QWVeskRecording::downloadDidReceiveDataOfLength(qint64 length)
{
    const auto self = shared_from_this(); // the browser may let go of it
    m_downloaded += static_cast<quint64>(length);
    const float fraction =
        m_downloadSize == 0 ? 1.0F : static_cast<float>(m_downloaded) / static_cast<float>(m_downloadSize);
    const auto recorder = device();
    qw::RecorderBrowser *const browser = recorder ? recorder->browser() : nullptr;
    if (!browser || !browser->recordingUpdateProgress(*this, fraction))
        return;
    cancelDownload();
    browser->recordingDidStopDownloading(*this);
}

void QWVeskRecording::downloadDidFinish()
{
    const auto self = shared_from_this();
    m_download.reset();
    m_folders.keep();
    const auto recorder = device();
    if (qw::RecorderBrowser *const browser = recorder ? recorder->browser() : nullptr)
        browser->recordingDidFinishDownloading(*this);
}

/// download:didFailWithError:
void QWVeskRecording::downloadDidFailWithError(const QString &localizedDescription)
{
    const auto self = shared_from_this();
    cancelDownload();
    QWApplicationLog::sharedLog().logContextFormatArguments(
        QWApplicationLog::Error, nullptr, "did fail with error: %@ (%@)", {localizedDescription, m_downloadPath});
    const auto recorder = device();
    if (qw::RecorderBrowser *const browser = recorder ? recorder->browser() : nullptr)
        browser->recordingDidFailDownloading(*this, localizedDescription);
}
