#pragma once

#include <QObject>

namespace platform
{

/// Says that no program opened something, one at a time: what comes while an alert is up, or about to be, is passed
/// over. One per System. Main thread.
class UnopenedAlert : public QObject
{
public:
    static UnopenedAlert &sharedInstance();

    /// From the loop: whoever opens may be in the middle of something, such as a page's navigation.
    void tell(const QString &name);

private:
    void _show(const QString &name);

    bool m_isTelling = false;
};

} // namespace platform
