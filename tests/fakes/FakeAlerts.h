#pragma once

#include <QWPlatform/appkit/Alerts.h>

#include <functional>
#include <vector>

/// Keeps what was shown and answers with the default button unless the test says otherwise.
class FakeAlerts : public platform::Alerts
{
public:
    int run(const platform::Alert &alert) override;

    /// The next alerts are answered with these button titles, in order; a title that an alert lacks fails the test.
    void answerWith(const QStringList &titles) { m_answers += titles; }

    QStringList shown;                                  ///< Message texts, in order.
    std::vector<platform::Alert> alerts;                ///< The same, whole.
    std::function<void()> whileShown;                   ///< Called during each run, when set.
    std::function<int(const platform::Alert &)> answer; ///< Chooses the button instead, when set.

private:
    QStringList m_answers;
};
