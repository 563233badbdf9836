#pragma once

#include <QWPlatform/linux/network/LinuxUrlLoader.h>

#include <QTest>

#include <future>

/// A load on a thread of its own, while the server answers from this one.
class Load
{
public:
    Load(platform::LinuxUrlLoader &loader, const platform::UrlRequest &request)
        : m_future(std::async(std::launch::async, [&loader, request] { return loader.load(request); }))
    {
    }

    Load(platform::LinuxUrlLoader &loader, const QUrl &url)
        : Load(loader, platform::UrlRequest{.url = url, .method = "GET", .headers = {}, .body = {}})
    {
    }

    bool isReady() const { return m_future.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }

    platform::UrlResponse response()
    {
        if (!QTest::qWaitFor([this] { return isReady(); }, 20'000))
            qFatal("The load does not end");
        return m_future.get();
    }

private:
    std::future<platform::UrlResponse> m_future;
};

inline platform::UrlResponse loaded(platform::LinuxUrlLoader &loader, const QUrl &url)
{
    return Load(loader, url).response();
}
