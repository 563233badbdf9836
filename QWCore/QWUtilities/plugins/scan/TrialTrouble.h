#pragma once

#include "PluginFormat.h"

#include <QString>

namespace platform
{
class System;
}

namespace qw
{

/// Tells the user that new plug-ins cannot be tried, for a reason that is none of theirs: once for both catalogs, which
/// a host brings up to date one after the other, and again when the same catalog finds the same the next time.
class TrialTrouble
{
public:
    /// The current System's.
    static TrialTrouble &sharedInstance();

    /// Shows the alert; @p explanation is its informative text. Nothing when the other catalog has just shown it.
    void tell(const PluginFormat &format, const QString &explanation);

    /// Trials are possible again.
    void forget() { m_teller = nullptr; }

protected:
    TrialTrouble() = default;

private:
    const PluginFormat *m_teller = nullptr; ///< Whose scan has told last; null: nothing is told.
};

} // namespace qw
