#pragma once

#include "TourStep.h"

#include <QList>
#include <QStringList>

namespace platform
{
class MenuItem;
}

namespace demo
{

/// The main window after effects were chosen from the menu, as a user would. It tries those it likes best first, and
/// goes on with the next when a plug-in refuses.
class EffectStep : public TourStep
{
public:
    /// @p steps is the number of effects that the picture is to show in the chain.
    EffectStep(QString name, QStringList favourites, int steps);

    QString name() const override { return m_name; }
    void begin(DemoApplication &application) override;
    std::optional<QImage> picture(DemoApplication &application) override;
    bool hasFailed() const override { return m_hasFailed; }

private:
    void _tryNext(DemoApplication &application);

    QString m_name;
    QStringList m_favourites;
    size_t m_steps;
    QList<platform::MenuItem *> m_candidates;
    bool m_hasFailed = false; ///< No plug-in is left.
};

} // namespace demo
