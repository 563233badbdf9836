#pragma once

#include "TourStep.h"

#include <QList>
#include <QString>

class QAction;
class QMenu;

namespace demo
{

/// The Effects menu, open down to its first plug-ins, over the main window.
class MenuStep : public TourStep
{
public:
    explicit MenuStep(QString name);

    QString name() const override { return m_name; }
    void begin(DemoApplication &application) override;
    std::optional<QImage> picture(DemoApplication &application) override;
    void end(DemoApplication &application) override;

private:
    static QAction *_submenuWorthOpening(const QMenu &menu);

    QString m_name;
    QMenu *m_submenu = nullptr; ///< The one that is to open; null: none.
};

} // namespace demo
