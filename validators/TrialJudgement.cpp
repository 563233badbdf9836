#include "TrialJudgement.h"

#include "TrialReport.h"

#include <csignal>
#include <cstring>
#include <sys/wait.h>

namespace
{
using Verdict = TrialReport::Verdict;

/// A plug-in that has given its sound and only then crashes may just have been closed too soon.
bool isWindingUp(TrialStep step)
{
    return step == TrialStep::Stopping || step == TrialStep::Closing;
}

/// What others send, such as a system that runs out of memory; a plug-in's own faults end otherwise.
bool isFromOutside(int signal)
{
    return signal == SIGKILL || signal == SIGTERM || signal == SIGINT || signal == SIGHUP;
}

QByteArray during(TrialStep step)
{
    return QByteArray(" (") + nameOf(step) + ')';
}

TrialJudgement ofEnded(const TrialReport &report, int exitStatus)
{
    if (report.verdict() == Verdict::Passed)
        return {.status = ValidatorStatus::Passed, .handOff = report.text()};
    if (report.verdict() != Verdict::None)
        return {.isPremature = report.verdict() == Verdict::Premature, .reason = report.text()};
    if (exitStatus == static_cast<int>(ValidatorStatus::NoProgress)) // its watchdog has told why
        return {.status = ValidatorStatus::NoProgress};
    // Not always by its own will: the display's library ends every program whose display goes away.
    return {.isPremature = true, .reason = "The plug-in ends the process" + during(report.step) + '.'};
}
} // namespace

TrialJudgement TrialJudgement::of(const TrialReport *report, int waitStatus)
{
    if (!report || waitStatus == -1)
        return {.reason = "There is no process to try the plug-in in."};
    if (WIFEXITED(waitStatus))
        return ofEnded(*report, WEXITSTATUS(waitStatus));
    const int signal = WTERMSIG(waitStatus);
    return {.isPremature = isWindingUp(report->step) || isFromOutside(signal),
            .reason = "The plug-in crashes" + during(report->step) + ": " + ::strsignal(signal) + '.'};
}
