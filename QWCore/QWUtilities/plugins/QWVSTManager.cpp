#include "QWVSTManager.h"

#include "QWUtilities/plugins/catalog/PluginCatalog.h"
#include "QWUtilities/plugins/catalog/PluginMenu.h"
#include "QWUtilities/plugins/scan/FolderEntries.h"
#include "QWUtilities/plugins/scan/PathExtension.h"
#include "QWUtilities/plugins/scan/PluginValidation.h"

#include <QWBase/QWFile.h>
#include <QWBase/files/QWPathStrings.h>
#include <QWPlatform/System.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QMenu>
#include <QSet>

#include <algorithm>
#include <optional>

using platform::System;
using qw::FolderEntries;
using qw::PluginMenu;

namespace
{
/// The user's folder keeps its tilde, and so do the paths of the records found there.
constexpr const char *pluginFolders[] = {"/Library/Audio/Plug-Ins/VST", "~/Library/Audio/Plug-Ins/VST"};

constexpr QLatin1StringView rootFolder("VST");

/// The folders between the first "VST" of @p path and the bundle; none when there is no such place.
QList<QStringView> foldersBelowRoot(QStringView path)
{
    const auto components = path.split(QLatin1Char('/'));
    const auto root = components.indexOf(rootFolder);
    return root < 0 || root >= components.size() - 2 ? QList<QStringView>()
                                                     : components.sliced(root + 1, components.size() - root - 2);
}

/// The menu of the folder that holds the bundle at @p path; null when a plug-in named like one of its folders, which
/// has no submenu, stands in the way.
PluginMenu::Folder *folderOf(const QString &path, PluginMenu &menu)
{
    PluginMenu::Folder *folder = &menu.top();
    for (const QStringView title : foldersBelowRoot(path))
        if (folder)
            folder = menu.folder(*folder, title.toString());
    return folder;
}
} // namespace

class Q_DECL_HIDDEN QWVSTManager::Private
{
public:
    explicit Private(const QWVSTManager &owner)
        : m_owner(owner)
        , m_validation(qw::vstFormat)
        , m_catalog(System::current().locations().mapped(m_validation.databasePath()))
    {
    }

    const std::vector<std::shared_ptr<QWVSTDescription>> &database() const { return m_catalog.records(); }
    void validate();
    std::unique_ptr<QMenu> _menuWithTargetActionIsInstrument(QObject *target, const platform::Selector &action,
                                                             bool isInstrument) const;

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

    const QWVSTManager &m_owner;
    qw::PluginValidation m_validation;
    qw::PluginCatalog<QWVSTDescription, PathKey> m_catalog;
    std::optional<QSet<QString>> m_graylist; ///< Bundle identifiers, read at first use: the bundle of a subclass is
                                             ///< not known earlier.
};

QWVSTManager::QWVSTManager()
    : d(std::make_unique<Private>(*this))
{
}

QWVSTManager::~QWVSTManager() = default;

const std::vector<std::shared_ptr<QWVSTDescription>> &QWVSTManager::database() const
{
    return d->database();
}

void QWVSTManager::validate()
{
    d->validate();
}

void QWVSTManager::Private::validate()
{
    const qw::PluginValidation::Scan scan(m_validation);
    _dropStaleRecords();
    for (const char *folder : pluginFolders) {
        OpenFolders open; // the scan's own: an exception may end it anywhere
        _loadDescriptionsForDirectory(folder, open);
    }
}

void QWVSTManager::Private::_dropStaleRecords()
{
    const auto isStale = [](const QWVSTDescription &record) {
        const auto date = QWFile::modificationDateOfFileAtPath(record.path());
        return !date || date != record.modificationDate(); // gone, or changed
    };
    if (m_catalog.removeIf(isStale))
        _saveDatabase();
}

void QWVSTManager::Private::_loadDescriptionsForDirectory(const QString &folder, OpenFolders &open)
{
    const FolderEntries listing(System::current().locations().mapped(folder));
    if (listing.entries().empty() || std::find(open.begin(), open.end(), listing.identity()) != open.end())
        return;
    open.push_back(listing.identity());
    for (const FolderEntries::Entry &entry : listing.entries()) {
        const QString path = folder + QLatin1Char('/') + entry.name;
        if (qw::pathExtension(entry.name) == QLatin1StringView("vst")) {
            if (m_validation.canTry() && !_descriptionForPath(path))
                _addNewBundle(path, entry.name);
        } else if (_isFolder(path, entry.kind)) {
            _loadDescriptionsForDirectory(path, open);
        }
    }
    open.pop_back();
}

bool QWVSTManager::Private::_isFolder(const QString &path, FolderEntries::Kind kind)
{
    return kind == FolderEntries::Kind::Folder ||
           (kind == FolderEntries::Kind::Unknown && QWFile::directoryExistsAtPath(path));
}

void QWVSTManager::Private::_addNewBundle(const QString &path, const QString &entryName)
{
    const auto record = QWVSTDescription::descriptionWithPath(path);
    if (_isGraylisted(path) && m_validation.userIgnores(QWPathStrings::filename(path)))
        record->setIgnore(true);
    m_catalog.append(record);
    _saveDatabase();
    if (m_validation.isSkipped() || record->ignore())
        return;
    if (!m_validation.validate(*record, {QWFile::conformPath(path)}, QWPathStrings::filename(entryName),
                               QWPathStrings::filename(path)))
        m_catalog.remove(*record);
    _saveDatabase();
}

void QWVSTManager::Private::_saveDatabase()
{
    m_catalog.save();
}

std::shared_ptr<QWVSTDescription> QWVSTManager::Private::_descriptionForPath(const QString &path)
{
    return m_catalog.find(path);
}

bool QWVSTManager::Private::_isGraylisted(const QString &path)
{
    if (!m_graylist) {
        m_graylist.emplace();
        const QString file = platform::Bundle::forClassOf(m_owner).pathForResource(qw::vstFormat.graylist, "plist");
        for (const QVariant &element : platform::PropertyList::arrayFromFile(file))
            if (element.typeId() == QMetaType::QString)
                m_graylist->insert(element.toString());
    }
    if (m_graylist->isEmpty())
        return false;
    const platform::Bundle bundle(System::current().locations().mapped(path));
    const QString identifier = bundle.identifier();
    return !identifier.isEmpty() && m_graylist->contains(identifier);
}

std::unique_ptr<QMenu> QWVSTManager::instrumentsMenuWithTargetAction(QObject *target,
                                                                     const platform::Selector &action) const
{
    return d->_menuWithTargetActionIsInstrument(target, action, true);
}

std::unique_ptr<QMenu> QWVSTManager::effectsMenuWithTargetAction(QObject *target,
                                                                 const platform::Selector &action) const
{
    return d->_menuWithTargetActionIsInstrument(target, action, false);
}

std::unique_ptr<QMenu> QWVSTManager::Private::_menuWithTargetActionIsInstrument(QObject *target,
                                                                                const platform::Selector &action,
                                                                                bool isInstrument) const
{
    PluginMenu menu(target, action);
    for (const auto &record : m_catalog.records()) {
        if (record->ignore() || record->isInstrument() != isInstrument)
            continue;
        if (auto *folder = folderOf(record->path(), menu))
            PluginMenu::addItem(*folder, QWPathStrings::filename(record->path()), QVariant::fromValue(record));
    }
    return menu.take(platform::localized("No plug-ins found"));
}
