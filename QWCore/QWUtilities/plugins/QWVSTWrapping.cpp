#include "QWVSTWrapping.h"

#include <QWBase/files/QWPathStrings.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/processes/ChildProcesses.h>
#include <QWPlatform/machine/SystemServices.h>

#include <atomic>

using platform::System;
using platform::SystemServices;

namespace
{
constexpr int moreToDo = 3; ///< The program's exit status when its time was up.

const char frameworkAnchor = 0; ///< Lies in this framework, and so tells where that is.

/// A second at a time, so that no work of the program's is lost when a host quits, which ends the run in progress.
platform::ChildProcessRequest wrappingRequest()
{
    QString path = platform::Bundle::forAddress(&frameworkAnchor).executablePath();
    QWPathStrings::replaceLastPathComponent(path, "Versions/A/Helpers/qw-wrap-vst");
    platform::ChildProcessRequest request;
    request.launchPath = path;
    request.arguments = QStringList{"--quiet", "--seconds", "1"};
    request.captureOutput = true; // not the terminal's
    return request;
}
} // namespace

class Q_DECL_HIDDEN QWVSTWrapping::Private
{
public:
    std::atomic<bool> isCancelled = false;
    bool isUnderWay = false; ///< Main thread only.
};

QWVSTWrapping &QWVSTWrapping::sharedInstance()
{
    return System::current().shared<QWVSTWrapping>([] { return new QWVSTWrapping; });
}

QWVSTWrapping::QWVSTWrapping()
    : d(std::make_shared<Private>())
{
}

QWVSTWrapping::~QWVSTWrapping()
{
    d->isCancelled = true;
}

bool QWVSTWrapping::isUnderWay() const
{
    return d->isUnderWay;
}

bool QWVSTWrapping::begin(std::function<void()> done)
{
    if (d->isUnderWay)
        return false;
    auto &processes = *SystemServices::current().childProcesses;
    d->isUnderWay = System::current().backgroundWork().start([=, state = d, &processes, request = wrappingRequest()] {
        const auto hasMore = [&] {
            const platform::ChildProcessResult result = processes.run(request);
            return result.exited && result.status == moreToDo;
        };
        while (!state->isCancelled && hasMore()) {
        }
        return [=] {
            state->isUnderWay = false;
            if (!state->isCancelled)
                done();
        };
    });
    return d->isUnderWay;
}
