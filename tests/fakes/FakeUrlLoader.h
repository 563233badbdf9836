#pragma once

#include <QWPlatform/network/UrlLoader.h>

#include <QHash>

#include <mutex>
#include <vector>

/// Answers by address, on any thread; an address that the test did not script cannot be reached.
class FakeUrlLoader : public platform::UrlLoader
{
public:
    platform::UrlResponse load(const platform::UrlRequest &request) override;
    void cancelAll() override;

    void answer(const QString &url, const QByteArray &body, int status = 200);

    /// All requests so far, in order.
    std::vector<platform::UrlRequest> requests() const;
    QStringList requestedUrls() const;

private:
    mutable std::mutex m_mutex; ///< Guards all below.
    QHash<QString, platform::UrlResponse> m_answers;
    std::vector<platform::UrlRequest> m_requests;
    bool m_cancelled = false;
};
