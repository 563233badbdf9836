#pragma once

/// Exit statuses of a validator. The host judges by the hand-off file alone; these are for people and scripts.
enum class ValidatorStatus
{
    Passed = 0,
    Failed = 1,
    WrongUsage = 2,
    NoProgress = 3
};

/// Keeps what an unknown plug-in does away from the user and the host: no core dumps, no windows, nothing on standard
/// output, no end by a full disk's signal, and a call of exit() ends in failure.
void isolateProcess();

/// From here on this process may take so much memory and no more: what an unknown plug-in takes beyond that is not
/// taken from the user's other programs.
void limitMemory();

/// Ends the process at once, without running what the plug-in left to run at the end.
[[noreturn]] void endProcess(ValidatorStatus status);
