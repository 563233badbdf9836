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
    virtual ~QWAUManager();
    QWAUManager(const QWAUManager &) = delete;
    QWAUManager &operator=(const QWAUManager &) = delete;

    /// Drops units that are gone, then tries each new one once. Failures are shown as alerts, not returned.
    void validate();

    /// New menu with one submenu a manufacturer; its items carry their component descriptions. @p target is not owned.
    /// Empty without units.
    std::unique_ptr<QMenu> instrumentsMenuWithTargetAction(QObject *target, const platform::Selector &action) const;
    std::unique_ptr<QMenu> effectsMenuWithTargetAction(QObject *target, const platform::Selector &action) const;

    /// In order of addition.
    const std::vector<std::shared_ptr<QWAUDescription>> &database() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
