#pragma once

#include "TrialOutcome.h"
#include "TrialStep.h"

#include <QByteArray>

#include <atomic>
#include <memory>

/// What the process that tries a plug-in tells the one that watches it, in memory that both share: it stays readable
/// however the former ends.
class TrialReport
{
public:
    enum class Verdict
    {
        None,      ///< The process did not come to its end.
        Passed,    ///< The text is the plug-in's state as a property list.
        Failed,    ///< The text is the reason.
        Premature, ///< Likewise; with more patience the plug-in may pass.
    };

    struct Unmap
    {
        void operator()(TrialReport *report) const;
    };
    using Pointer = std::unique_ptr<TrialReport, Unmap>;

    /// One that children share; null when there is no memory.
    static Pointer make();

    void tell(const TrialOutcome &outcome);

    Verdict verdict() const { return m_verdict; }
    QByteArray text() const;

    std::atomic<TrialStep> step{TrialStep::Opening};

private:
    void _tell(Verdict verdict, const QByteArray &text);

    static constexpr std::size_t longestText = 256 * 1024;

    std::atomic<Verdict> m_verdict{Verdict::None};
    std::atomic<std::size_t> m_size{0};
    char m_text[longestText]; ///< Pages that are not used cost nothing.
};
