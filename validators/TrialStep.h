#pragma once

/// How far a trial has come.
enum class TrialStep
{
    Opening,
    Starting,
    Settling,
    Processing,
    Stopping,
    Closing
};

/// As it stands in sentences.
constexpr const char *nameOf(TrialStep step)
{
    constexpr const char *names[] = {"opening",    "starting to process", "waiting for its threads",
                                     "processing", "stopping to process", "closing"};
    return names[static_cast<int>(step)];
}
