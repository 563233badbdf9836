#pragma once

#include <QWPlatform/network/transfers/UrlDownload.h>

#include <QObject>
#include <QString>

namespace qw
{

/// A download that could not even begin: it fails as others do, from the event loop. Main thread.
class FailedUrlDownload : public platform::UrlDownload
{
public:
    static std::unique_ptr<platform::UrlDownload> make(const QString &localizedDescription,
                                                       platform::UrlDownloadObserver &observer);

    FailedUrlDownload(const QString &localizedDescription, platform::UrlDownloadObserver &observer);

    void cancel() override;

private:
    std::unique_ptr<QObject> m_pending; ///< What is posted dies with it.
};

} // namespace qw
