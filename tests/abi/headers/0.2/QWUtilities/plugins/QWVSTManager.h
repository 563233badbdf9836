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
    virtual ~QWVSTManager(); ///< Menus made here stay, and so do the records they share.

    QWVSTManager(const QWVSTManager &) = delete;            ///< One per file.
    QWVSTManager &operator=(const QWVSTManager &) = delete; ///< One per file.

    /// Drops stale records, then tries each new bundle once. Failures are shown as alerts, not returned.
    void validate();

    /// New menu, nested by folder below "VST"; its items carry their records, shared with the catalog, as
    /// std::shared_ptr<QWVSTDescription>. @p target is not owned. Never empty: without plug-ins it holds
    /// "No plug-ins found".
    std::unique_ptr<QMenu> instrumentsMenuWithTargetAction(QObject *target, const platform::Selector &action) const;

    /// The same of the plug-ins that are no instruments.
    std::unique_ptr<QMenu> effectsMenuWithTargetAction(QObject *target, const platform::Selector &action) const;

    /// The records, in order of addition; shared with whoever keeps one. Valid until the next validate().
    const std::vector<std::shared_ptr<QWVSTDescription>> &database() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
