#pragma once

#include "QWPlatform/network/UrlLoader.h"

#include <QWPlatform/qwplatform_private.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

class QEventLoop;

namespace platform
{

/// Loads http, https and file addresses, each call with a network stack of its own on the calling thread.
class QWPLATFORM_TEST_EXPORT LinuxUrlLoader : public UrlLoader
{
public:
    LinuxUrlLoader();

    /// A load fails after @p inactivity without a byte.
    explicit LinuxUrlLoader(std::chrono::milliseconds inactivity);

    UrlResponse load(const UrlRequest &request) override;
    void cancelAll() override;

private:
    class Running;

    UrlResponse _loadHere(const UrlRequest &request);

    const std::chrono::milliseconds m_inactivity;
    std::mutex m_mutex;                ///< Guards all below.
    std::condition_variable m_ended;   ///< A call has ended.
    std::vector<QEventLoop *> m_loops; ///< Of the running calls, each on its own thread.
    bool m_cancelled = false;          ///< Once set, never cleared.
};

} // namespace platform
