#pragma once

#include "QWAUDescription.h"

#include <QWPlatform/appkit/Selector.h>
#include <QWUtilities/qwutilities_export.h>

#include <memory>
#include <vector>

class QMenu;
class QObject;

/// Catalog of the installed Audio Units. Main thread only; validate() blocks until every new unit was tried.
class QWUTILITIES_EXPORT QWAUManager
{
public:
    /// Loads the catalog; a missing or unreadable file gives an empty one.
    QWAUManager();
    virtual ~QWAUManager(); ///< Menus made here stay.

    QWAUManager(const QWAUManager &) = delete;            ///< One per file.
    QWAUManager &operator=(const QWAUManager &) = delete; ///< One per file.

    /// Drops units that are gone, then tries each new one once. Failures are shown as alerts, not returned.
    void validate();

    /// New menu with one submenu a manufacturer; its items carry their component descriptions. @p target is not owned.
    /// Empty without units.
    std::unique_ptr<QMenu> instrumentsMenuWithTargetAction(QObject *target, const platform::Selector &action) const;

    /// The same of the units that are no instruments; players are in neither menu.
    std::unique_ptr<QMenu> effectsMenuWithTargetAction(QObject *target, const platform::Selector &action) const;

    /// The records, in order of addition; shared with whoever keeps one. Valid until the next validate().
    const std::vector<std::shared_ptr<QWAUDescription>> &database() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
