#pragma once

#include "PluginThreads.h"
#include "TrialOutcome.h"
#include "TrialPace.h"

#include <functional>
#include <memory>

namespace platform
{
class AudioPlugin;
}
class Watchdog;

/// Opens a plug-in, starts it, sends it a few blocks of silence and of noise, an instrument also a note, stops and
/// closes it, and tells @ref Watchdog of each step.
class PluginTrial
{
public:
    using Open = std::function<std::unique_ptr<platform::AudioPlugin>(QString *error)>;
    using StateOf = std::function<QVariantMap(const platform::AudioPlugin &plugin)>;

    PluginTrial(Watchdog &watchdog, const TrialPace &pace);

    TrialOutcome run(const Open &open, const StateOf &stateOf) const;

private:
    TrialOutcome _try(platform::AudioPlugin &plugin) const;
    bool _isFiniteInTheEnd(platform::AudioPlugin &plugin) const;
    bool _isFinite(platform::AudioPlugin &plugin) const;
    void _awaitThreads() const;

    Watchdog &m_watchdog;
    const TrialPace &m_pace;
    const PluginThreads m_threads;
};
