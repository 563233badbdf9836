#pragma once

#include "../network/UrlLoader.h"

#include <chrono>
#include <mutex>
#include <vector>

class QEventLoop;

namespace platform
{

/// Loads http, https and file addresses, each call with a network stack of its own on the calling thread.
class QWPLATFORM_EXPORT LinuxUrlLoader : public UrlLoader
{
public:
    struct Limits
    {
        std::chrono::milliseconds inactivity = std::chrono::seconds(30);
        qint64 bodySize = 64 * 1024 * 1024;
    };

    LinuxUrlLoader();
    explicit LinuxUrlLoader(Limits limits);

    UrlResponse load(const UrlRequest &request) override;
    void cancelAll() override;

private:
    class Running;

    UrlResponse _loadHere(const UrlRequest &request);

    const Limits m_limits;
    std::mutex m_mutex;                ///< Guards all below.
    std::vector<QEventLoop *> m_loops; ///< Of the running calls, each on its own thread.
    bool m_cancelled = false;          ///< Once set, never cleared.
};

} // namespace platform
