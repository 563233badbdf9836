#pragma once

#include "QWAUDescription.h"
#include "QWUtilities/plugins/catalog/PluginCatalog.h"
#include "QWUtilities/plugins/scan/PluginValidation.h"

#include <QWPlatform/appkit/Selector.h>

#include <memory>
#include <optional>

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
    const std::vector<std::shared_ptr<QWAUDescription>> &database() const { return m_catalog.records(); }

private:
    struct ComponentKey
    {
        static const QWComponentDescription &of(const QWAUDescription &record) { return record.componentDescription(); }
    };

    void _dropStaleRecords(const std::vector<QWComponentDescription> &installed);
    void _addNewUnit(const QWComponentDescription &unit);
    void _saveDatabase();
    std::shared_ptr<QWAUDescription> _descriptionWithComponentDescription(const QWComponentDescription &description);
    std::optional<QString> _nameOfGraylistEntryForComponentDescription(const QWComponentDescription &description);
    QString _identifierOf(const QWComponentDescription &description);
    std::unique_ptr<QMenu> _menuWithTargetActionIsInstrument(QObject *target, const platform::Selector &action,
                                                             bool isInstrument) const;

    PluginValidation m_validation;
    PluginCatalog<QWAUDescription, ComponentKey> m_catalog;
    std::optional<QVariantList> m_graylist; ///< Read at first use: the bundle of a subclass is not known earlier.
    std::unique_ptr<class ComponentIdentifiers> m_identifiers; ///< During a scan, from its first new unit on.
};
