#pragma once

class QWError;

namespace qw
{

/// Says what of the shortcuts could not be written. Main thread.
class WriteFailures
{
public:
    /// Whether an alert tells the user; not at first.
    void setAlerts(bool alerts) { m_alerts = alerts; }

    /// In the log, and by an alert where that is wanted.
    void tell(const QWError &error) const;

    /// In the log only.
    static void log(const QWError &error);

private:
    bool m_alerts = false;
};

} // namespace qw
