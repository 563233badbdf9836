#pragma once

#include "ComponentCodes.h"
#include "InstalledComponent.h"
#include "QWPlatform/devices/components/ComponentRegistry.h"

#include <QWPlatform/qwplatform_private.h>

#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <set>

namespace platform
{

class ChildProcesses;
class Locations;

/// The union of the installed ".component" bundles and LV2 plug-ins. What was read from a bundle is kept, in memory
/// and in a file, until one of its watched files changes; only then are LV2 bundles read, by another process (see
/// Lv2BundleScan). Asking for components brings the file up to date; asking for a name or a location only reads, which
/// is all that a validator does.
class QWPLATFORM_TEST_EXPORT LinuxComponentRegistry : public ComponentRegistry
{
public:
    explicit LinuxComponentRegistry(const Locations &locations);
    /// Reads bundles by programs that @p processes runs, and ends; it must outlive the registry.
    LinuxComponentRegistry(const Locations &locations, ChildProcesses &processes);
    ~LinuxComponentRegistry() override;

    std::vector<AudioComponent> componentsOfType(quint32 type) override;
    QByteArray nameOfComponent(const AudioComponent &component) override;
    std::optional<ComponentLocation> locationOfComponent(const AudioComponent &component) override;

private:
    enum class Files
    {
        Read,
        Update
    };

    struct Place
    {
        const InstalledBundle *bundle;
        const InstalledComponent *component;
    };

    void _scan(Files files);
    void _readCache();
    void _tellOfNames(const QStringList &passedOver);
    void _tellOfPath();
    void _update(Files files);
    void _assignCodes(ComponentCodes::Keep keep);
    void _index();
    const Place *_find(const AudioComponent &component);
    QString _supportFile(const QString &name) const;

    const Locations &m_locations;
    std::unique_ptr<ChildProcesses> m_ownProcesses; ///< Null when those of others are used.
    ChildProcesses &m_processes;
    std::mutex m_mutex; ///< Guards all below.
    bool m_cacheRead = false;
    bool m_scanned = false;
    QString m_lv2Path;                      ///< The folders that were searched for m_bundles; "": not known.
    std::set<QString> m_passedOver;         ///< Bundles that the log was told of.
    std::vector<InstalledBundle> m_bundles; ///< In registry order.
    std::vector<Place> m_places;            ///< Every unit once, in registry order.
    std::map<std::array<quint32, 3>, std::size_t> m_placeOfCodes;
};

} // namespace platform
