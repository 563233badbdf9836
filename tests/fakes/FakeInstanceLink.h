#pragma once

#include <QWPlatform/appkit/windows/InstanceLink.h>

/// A session bus on which the test decides whether another instance runs.
class FakeInstanceLink : public platform::InstanceLink
{
public:
    bool listen(const QString &bundleIdentifier, std::function<void(const QString &)> received) override
    {
        listening = bundleIdentifier;
        deliver = std::move(received);
        return !otherInstanceRuns;
    }

    bool handOver(const QString &, const QStringList &urls) override
    {
        if (otherInstanceRuns)
            handedOver += urls;
        return otherInstanceRuns;
    }

    bool otherInstanceRuns = false;
    QString listening;                               ///< Bundle identifier that was listened for.
    QStringList handedOver;                          ///< What went to the other instance.
    std::function<void(const QString &url)> deliver; ///< Plays the other instance handing a URL over.
};
