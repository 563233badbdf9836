#pragma once

#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/appkit/Selector.h>
#include <QWUtilities/qwutilities_export.h>

#include <memory>
#include <vector>

class QMenu;
class QObject;

/// Catalog of the installed VST plug-ins. Main thread only; validate() blocks until every new bundle was tried.
class QWUTILITIES_EXPORT QWVSTManager
{
public:
    /// Loads the catalog; a missing or unreadable file gives an empty one.
    QWVSTManager();
    virtual ~QWVSTManager();
    QWVSTManager(const QWVSTManager &) = delete;
    QWVSTManager &operator=(const QWVSTManager &) = delete;

    /// Drops stale records, then tries each new bundle once. Failures are shown as alerts, not returned.
    void validate();

    /// New menu, nested by folder below "VST"; its items carry their records, shared with the catalog, as
    /// std::shared_ptr<QWVSTDescription>. @p target is not owned. Never empty: without plug-ins it holds
    /// "No plug-ins found".
    std::unique_ptr<QMenu> instrumentsMenuWithTargetAction(QObject *target, const platform::Selector &action) const;
    std::unique_ptr<QMenu> effectsMenuWithTargetAction(QObject *target, const platform::Selector &action) const;

    /// In order of addition.
    const std::vector<std::shared_ptr<QWVSTDescription>> &database() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
