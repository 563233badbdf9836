#pragma once

#include <QWPlatform/network/services/NetService.h>
#include <QWPlatform/network/services/NetServiceBrowser.h>

#include <QStringList>

#include <functional>
#include <memory>

/// Notes what a browser tells: "+ Name", "- Name", with "…" behind it when more is coming, and "did not search".
class ServicesHeard : public platform::NetServiceBrowserDelegate
{
public:
    void netServiceBrowserDidFindService(platform::NetServiceBrowser &,
                                         const std::shared_ptr<platform::NetService> &service, bool moreComing) override
    {
        services.push_back(service);
        _note("+ " + service->name(), moreComing);
    }

    void netServiceBrowserDidRemoveService(platform::NetServiceBrowser &,
                                           const std::shared_ptr<platform::NetService> &service,
                                           bool moreComing) override
    {
        _note("- " + service->name(), moreComing);
    }

    void netServiceBrowserDidNotSearch(platform::NetServiceBrowser &, const QVariantMap &errors) override
    {
        reason = errors.value("reason").toString();
        _note("did not search", false);
    }

    /// The first one found under @p name; null when there was none.
    std::shared_ptr<platform::NetService> find(const QString &name) const
    {
        for (const auto &service : services)
            if (service->name() == name)
                return service;
        return nullptr;
    }

    QString lastCall() const { return calls.isEmpty() ? QString() : calls.last(); }

    QStringList calls;
    std::vector<std::shared_ptr<platform::NetService>> services; ///< As they were found.
    QString reason;                                              ///< Why it did not search.
    std::function<void()> onCall = [] {};

private:
    void _note(const QString &call, bool moreComing)
    {
        calls.append(moreComing ? call + "…" : call);
        const auto react = onCall; // which may replace it
        react();
    }
};

/// Notes what came of a resolution.
class ResolutionHeard : public platform::NetServiceDelegate
{
public:
    void netServiceDidResolveAddress(platform::NetService &service) override
    {
        ++resolved;
        addresses = service.addresses();
        port = service.port();
        onCall();
    }

    void netServiceDidNotResolve(platform::NetService &, const QVariantMap &errors) override
    {
        ++failed;
        reason = errors.value("reason").toString();
        onCall();
    }

    int resolved = 0;
    int failed = 0;
    QList<QByteArray> addresses;
    int port = 0;
    QString reason;
    std::function<void()> onCall = [] {};
};
