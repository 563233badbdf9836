#pragma once

#include <QWPlatform/foundation/processes/ChildProcesses.h>

#include <functional>
#include <vector>

/// Keeps what was run; @ref handler plays the program. Without one, every program exits with status 0 and does nothing.
class FakeChildProcesses : public platform::ChildProcesses
{
public:
    platform::ChildProcessResult run(const platform::ChildProcessRequest &request) override
    {
        runs.push_back(request);
        if (handler)
            return handler(request);
        return {.started = true, .exited = true, .status = 0, .output = {}};
    }

    void endAll() override
    {
        if (onEndAll)
            onEndAll();
    }

    std::function<void()> onEndAll; ///< Plays the end of what runs.
    std::vector<platform::ChildProcessRequest> runs;
    std::function<platform::ChildProcessResult(const platform::ChildProcessRequest &)> handler;
};
