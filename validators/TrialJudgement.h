#pragma once

#include "Isolation.h"

#include <QByteArray>

class TrialReport;

/// What follows from how an attempt went.
struct TrialJudgement
{
    /// @p waitStatus is that of the attempt's process, -1 when there was none; @p report is null when there was none.
    static TrialJudgement of(const TrialReport *report, int waitStatus);

    ValidatorStatus status = ValidatorStatus::Failed;
    bool isPremature = false; ///< Another attempt, with more patience, may find nothing wrong.
    QByteArray reason{};      ///< What was wrong; "" when nothing was, or the process has said it itself.
    QByteArray handOff{};     ///< For the host, of a plug-in that passed.
};
