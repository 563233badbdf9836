#include "LinuxComponentRegistry.h"

#include "ComponentBundle.h"
#include "ComponentCache.h"
#include "Lv2BundleScan.h"
#include "PluginFolders.h"
#include "QWPlatform/foundation/Locations.h"
#include "QWPlatform/linux/process/LinuxChildProcesses.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace platform
{

namespace
{
constexpr auto supportFolder = "~/Library/Application Support/Quorwell/";
constexpr auto cacheName = "component_cache";
constexpr auto codesName = "component_codes.plist";

std::array<quint32, 3> codesOf(const AudioComponent &component)
{
    return {component.type, component.subtype, component.manufacturer};
}

bool isLv2(const QString &path)
{
    return !path.endsWith(".component");
}

QStringList watchedPaths(const QString &path)
{
    return isLv2(path) ? QStringList{path, path + "/manifest.ttl"} : ComponentBundle::watchedPaths(path);
}

/// "Author: Name", the registry's custom. The colon and blank between them is the only one, so that readers can split
/// it: one inside ("Matrix: MS to Stereo") becomes a dash.
QString registryName(const QString &author, const QString &name)
{
    const auto dashed = [](QString text) -> QString { return text.replace(": ", " - "); };
    return author.isEmpty() ? dashed(name) : QString(dashed(author) + ": " + dashed(name));
}

InstalledComponent installed(const Lv2Description &plugin)
{
    InstalledComponent component;
    component.component.type = plugin.type;
    component.name = registryName(plugin.author, plugin.name).toUtf8();
    component.author = plugin.author;
    component.uri = plugin.uri;
    return component;
}

/// A folder on the LV2 path without a manifest is none of ours.
bool isBundle(const QString &path, const std::vector<qint64> &stamps)
{
    return !isLv2(path) || stamps.back() != 0;
}

std::vector<InstalledComponent> installed(const Lv2BundleScan::Plugins &plugins)
{
    std::vector<InstalledComponent> components;
    for (const Lv2Description &plugin : plugins)
        components.push_back(installed(plugin));
    return components;
}

/// One that could not be asked about is taken for none that was read, so that the next look asks again.
void readLv2(ChildProcesses &processes, const std::vector<InstalledBundle *> &bundles)
{
    QStringList paths;
    for (const InstalledBundle *bundle : bundles)
        paths += bundle->path;
    const auto contents = Lv2BundleScan::read(processes, paths);
    for (std::size_t i = 0; i < bundles.size(); ++i) {
        if (contents[i])
            bundles[i]->components = installed(*contents[i]);
        else
            bundles[i]->stamps.clear();
    }
}

/// The bundles at those of @p paths that are bundles now, without their components.
std::vector<InstalledBundle> bundlesAt(const QStringList &paths)
{
    std::vector<InstalledBundle> bundles;
    for (const QString &path : paths) {
        std::vector<qint64> stamps = PluginFolders::stamps(watchedPaths(path));
        if (isBundle(path, stamps))
            bundles.push_back({path, std::move(stamps), {}});
    }
    return bundles;
}

bool isStale(const InstalledBundle &bundle)
{
    return PluginFolders::stamps(watchedPaths(bundle.path)) != bundle.stamps;
}

bool isSameState(const InstalledBundle &a, const InstalledBundle &b)
{
    return a.path == b.path && a.stamps == b.stamps;
}
} // namespace

LinuxComponentRegistry::LinuxComponentRegistry(const Locations &locations)
    : m_locations(locations)
    , m_ownProcesses(std::make_unique<LinuxChildProcesses>(locations))
    , m_processes(*m_ownProcesses)
{
}

LinuxComponentRegistry::LinuxComponentRegistry(const Locations &locations, ChildProcesses &processes)
    : m_locations(locations)
    , m_processes(processes)
{
}

LinuxComponentRegistry::~LinuxComponentRegistry() = default;

std::vector<AudioComponent> LinuxComponentRegistry::componentsOfType(quint32 type)
{
    const std::lock_guard guard(m_mutex);
    _scan(Files::Update);
    std::vector<AudioComponent> components;
    for (const Place &place : m_places)
        if (place.component->component.type == type)
            components.push_back(place.component->component);
    return components;
}

QByteArray LinuxComponentRegistry::nameOfComponent(const AudioComponent &component)
{
    const std::lock_guard guard(m_mutex);
    const Place *place = _find(component);
    if (!place || place->component->name.isEmpty())
        return {};
    const QByteArray &name = place->component->name;
    return QByteArray(1, static_cast<char>(std::min<qsizetype>(name.size(), 255))) + name;
}

std::optional<ComponentLocation> LinuxComponentRegistry::locationOfComponent(const AudioComponent &component)
{
    const std::lock_guard guard(m_mutex);
    const Place *place = _find(component);
    if (place && isStale(*place->bundle)) {
        _scan(Files::Read); // so that what is opened was read by another process before
        place = _find(component);
    }
    if (!place)
        return std::nullopt;
    return ComponentLocation{place->bundle->path, place->component->uri, place->component->factoryFunction};
}

const LinuxComponentRegistry::Place *LinuxComponentRegistry::_find(const AudioComponent &component)
{
    if (!m_cacheRead)
        _readCache();
    auto found = m_placeOfCodes.find(codesOf(component));
    if (!m_scanned && (found == m_placeOfCodes.end() || isStale(*m_places[found->second].bundle))) {
        _scan(Files::Read);
        found = m_placeOfCodes.find(codesOf(component));
    }
    return found == m_placeOfCodes.end() ? nullptr : &m_places[found->second];
}

void LinuxComponentRegistry::_readCache()
{
    m_cacheRead = true;
    auto cache = ComponentCache::read(_supportFile(cacheName)).value_or(ComponentCache::Contents());
    m_bundles = std::move(cache.bundles);
    m_lv2Path = std::move(cache.lv2Path);
    _index();
}

void LinuxComponentRegistry::_scan(Files files)
{
    if (!m_cacheRead)
        _readCache();
    m_scanned = true;
    const PluginFolders::Bundles folders = PluginFolders::componentAndLv2Bundles(m_locations);
    std::vector<InstalledBundle> found = bundlesAt(folders.paths);
    _tellOfNames(folders.passedOver);
    if (std::equal(found.begin(), found.end(), m_bundles.begin(), m_bundles.end(), isSameState))
        return; // the usual case, which must cost next to nothing
    _tellOfPath();
    std::unordered_map<QString, InstalledBundle> known;
    for (InstalledBundle &bundle : std::exchange(m_bundles, {}))
        known.emplace(bundle.path, std::move(bundle));
    std::vector<InstalledBundle *> changedLv2;
    for (InstalledBundle &bundle : found) {
        const auto before = known.find(bundle.path);
        if (before != known.end() && isSameState(bundle, before->second))
            bundle.components = std::move(before->second.components);
        else if (isLv2(bundle.path))
            changedLv2.push_back(&bundle);
        else
            bundle.components = ComponentBundle::components(bundle.path);
    }
    readLv2(m_processes, changedLv2);
    m_bundles = std::move(found);
    _update(files);
    _index();
}

void LinuxComponentRegistry::_tellOfNames(const QStringList &passedOver)
{
    for (const QString &path : passedOver)
        if (m_passedOver.insert(path).second)
            qWarning("\"%s\" is passed over: its name is not UTF-8.", qUtf8Printable(path));
}

void LinuxComponentRegistry::_tellOfPath()
{
    const QString lv2Path = std::exchange(m_lv2Path, PluginFolders::lv2Path());
    if (!lv2Path.isEmpty() && lv2Path != m_lv2Path)
        qWarning(
            "LV2 plug-ins are looked for in \"%s\" now, before in \"%s\": those of the other folders are forgotten.",
            qUtf8Printable(m_lv2Path), qUtf8Printable(lv2Path));
}

void LinuxComponentRegistry::_update(Files files)
{
    _assignCodes(files == Files::Update ? ComponentCodes::Keep::Yes : ComponentCodes::Keep::No);
    if (files == Files::Update)
        ComponentCache::write(_supportFile(cacheName), m_lv2Path, m_bundles);
}

void LinuxComponentRegistry::_assignCodes(ComponentCodes::Keep keep)
{
    ComponentCodes codes(_supportFile(codesName));
    std::vector<InstalledComponent *> plugins;
    for (InstalledBundle &bundle : m_bundles)
        for (InstalledComponent &component : bundle.components) {
            if (component.uri.isEmpty())
                codes.reserve(component.component);
            else
                plugins.push_back(&component);
        }
    if (!plugins.empty())
        codes.assign(plugins, keep);
}

void LinuxComponentRegistry::_index()
{
    m_places.clear();
    m_placeOfCodes.clear();
    std::unordered_set<QString> uris;
    for (const InstalledBundle &bundle : m_bundles)
        for (const InstalledComponent &component : bundle.components) {
            const bool isNewUri = component.uri.isEmpty() || uris.insert(component.uri).second;
            if (isNewUri && m_placeOfCodes.emplace(codesOf(component.component), m_places.size()).second)
                m_places.push_back({&bundle, &component});
        }
}

QString LinuxComponentRegistry::_supportFile(const QString &name) const
{
    return m_locations.mapped(supportFolder + name);
}

} // namespace platform
