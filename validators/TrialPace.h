#pragma once

#include <chrono>

/// How much patience a trial has with a plug-in.
struct TrialPace
{
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds calm;         ///< Threads that the plug-in has begun must have rested for so long …
    Milliseconds longestRest;  ///< … and are waited for so long at most, since some never rest.
    Milliseconds longestNoise; ///< Samples may be other than finite for so long at its beginning.
};

/// Costs next to nothing with plug-ins that begin no threads.
constexpr TrialPace usualPace{TrialPace::Milliseconds(30), TrialPace::Milliseconds(1000), TrialPace::Milliseconds(0)};

/// For those that did not pass at the usual one.
constexpr TrialPace patientPace{TrialPace::Milliseconds(300), TrialPace::Milliseconds(4000),
                                TrialPace::Milliseconds(2000)};
