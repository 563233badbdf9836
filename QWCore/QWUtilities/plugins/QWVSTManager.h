#pragma once

#include "QWUtilities/plugins/catalog/PluginCatalog.h"
#include "QWUtilities/plugins/scan/FolderEntries.h"
#include "QWUtilities/plugins/scan/PluginValidation.h"

#include <QWBase/QWVSTDescription.h>
#include <QWPlatform/appkit/Selector.h>

#include <QSet>

#include <memory>
#include <optional>

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
    const std::vector<std::shared_ptr<QWVSTDescription>> &database() const { return m_catalog.records(); }

private:
    struct PathKey
    {
        static const QString &of(const QWVSTDescription &record) { return record.path(); }
    };

    using OpenFolders = std::vector<FolderEntries::Identity>; ///< Outermost first: a link may lead back.

    void _dropStaleRecords();
    void _loadDescriptionsForDirectory(const QString &folder, OpenFolders &open);
    static bool _isFolder(const QString &path, FolderEntries::Kind kind);
    void _addNewBundle(const QString &path, const QString &entryName);
    void _saveDatabase();
    std::shared_ptr<QWVSTDescription> _descriptionForPath(const QString &path);
    bool _isGraylisted(const QString &path);
    std::unique_ptr<QMenu> _menuWithTargetActionIsInstrument(QObject *target, const platform::Selector &action,
                                                             bool isInstrument) const;

    PluginValidation m_validation;
    PluginCatalog<QWVSTDescription, PathKey> m_catalog;
    std::optional<QSet<QString>> m_graylist; ///< Bundle identifiers, read at first use: the bundle of a subclass is
                                             ///< not known earlier.
};
