#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QString>

namespace platform
{
class Clock;
}

namespace qw
{

/// Held around one trial and the taking of its result: the validators of all hosts and formats leave theirs in the same
/// folder. The kernel releases it with its holder, however that ends.
class QWUTILITIES_TEST_EXPORT TrialLock
{
public:
    /// Takes the lock of the file at @p path (a real path), waiting while others hold it: not for ever, but anew for
    /// each trial that begins meanwhile.
    TrialLock(const QString &path, platform::Clock &clock);
    ~TrialLock();
    TrialLock(const TrialLock &) = delete;
    TrialLock &operator=(const TrialLock &) = delete;

    /// True: another one holds it and does not come to an end. False also where no file can be made or locked, which is
    /// no reason to wait.
    bool isHeldByAnother() const { return m_isHeldByAnother; }

private:
    bool _take(platform::Clock &clock) const;

    int m_file = -1;
    bool m_isHeldByAnother = false;
};

} // namespace qw
