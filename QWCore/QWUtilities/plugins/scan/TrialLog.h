#pragma once

class QString;

namespace platform
{
struct ChildProcessResult;
}

namespace qw
{

/// What becomes of trials, in the host's log only: a terminal would be full of it.
namespace TrialLog
{
/// Notes what the validator and the plug-in @p name said, and how the former ended where the trial failed. Nothing
/// about plug-ins that passed in silence.
void note(const QString &name, const platform::ChildProcessResult &result, bool hasPassed);
} // namespace TrialLog

} // namespace qw
