#include "QWAUManager.h"

#include "QWUtilities/plugins/catalog/PluginCatalog.h"
#include "QWUtilities/plugins/catalog/PluginMenu.h"
#include "QWUtilities/plugins/scan/ComponentIdentifiers.h"
#include "QWUtilities/plugins/scan/PluginValidation.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Alerts.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QMenu>
#include <QScopeGuard>
#include <QSet>

#include <cmath>
#include <limits>
#include <optional>

using platform::fourCharCode;
using platform::localized;

namespace
{
constexpr quint32 scannedTypes[] = {fourCharCode("aufx"), fourCharCode("aumf"), fourCharCode("aumu"),
                                    fourCharCode("augn")};

/// The user's folder comes last, and so wins.
constexpr const char *componentFolders[] = {"/Library/Audio/Plug-Ins/Components",
                                            "~/Library/Audio/Plug-Ins/Components"};

std::vector<QWComponentDescription> installedUnits()
{
    std::vector<QWComponentDescription> units;
    for (const quint32 type : scannedTypes) {
        const auto ofType = QWComponentDescription::componentDescriptionsOfType(type);
        units.insert(units.end(), ofType.begin(), ofType.end());
    }
    return units;
}

/// A number of any kind, as the graylist's writers see it: signed, 32 bits.
std::optional<qint32> signedWord(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return static_cast<qint32>(value.toLongLong());
    case QMetaType::Double:
        if (const double number = value.toDouble(); std::abs(number) <= std::numeric_limits<quint32>::max())
            return static_cast<qint32>(static_cast<qint64>(number));
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

void tellThatUnitCannotBeOpened()
{
    platform::runAlert({localized("An Audio Unit failed to validate because it could not be opened."),
                        localized("This is usually as a result of incorrect permissions. Try to repair permissions "
                                  "using Disk Utility and try again."),
                        {}});
}
} // namespace

class Q_DECL_HIDDEN QWAUManager::Private
{
public:
    explicit Private(const QWAUManager &owner)
        : m_owner(owner)
        , m_validation(qw::audioUnitFormat)
        , m_catalog(platform::System::current().locations().mapped(m_validation.databasePath()))
    {
    }

    const std::vector<std::shared_ptr<QWAUDescription>> &database() const { return m_catalog.records(); }
    void validate();
    std::unique_ptr<QMenu> _menuWithTargetActionIsInstrument(QObject *target, const platform::Selector &action,
                                                             bool isInstrument) const;

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

    const QWAUManager &m_owner;
    qw::PluginValidation m_validation;
    qw::PluginCatalog<QWAUDescription, ComponentKey> m_catalog;
    std::optional<QVariantList> m_graylist; ///< Read at first use: the bundle of a subclass is not known earlier.
    std::unique_ptr<qw::ComponentIdentifiers> m_identifiers; ///< During a scan, from its first new unit on.
};

QWAUManager::QWAUManager()
    : d(std::make_unique<Private>(*this))
{
}

QWAUManager::~QWAUManager() = default;

const std::vector<std::shared_ptr<QWAUDescription>> &QWAUManager::database() const
{
    return d->database();
}

void QWAUManager::validate()
{
    d->validate();
}

void QWAUManager::Private::validate()
{
    const qw::PluginValidation::Scan scan(m_validation);
    const auto forgetIdentifiers = qScopeGuard([this] { m_identifiers.reset(); });
    const auto installed = installedUnits();
    m_catalog.forgetKeys(); // the host has the records, too, and may have changed one
    _dropStaleRecords(installed);
    for (const QWComponentDescription &unit : installed)
        if (m_validation.canTry() && !_descriptionWithComponentDescription(unit))
            _addNewUnit(unit);
}

void QWAUManager::Private::_dropStaleRecords(const std::vector<QWComponentDescription> &installed)
{
    const QSet<QWComponentDescription> known(installed.begin(), installed.end());
    const auto isGone = [&](const QWAUDescription &record) { return !known.contains(record.componentDescription()); };
    if (m_catalog.removeIf(isGone))
        _saveDatabase();
}

void QWAUManager::Private::_addNewUnit(const QWComponentDescription &unit)
{
    const auto record = QWAUDescription::description();
    record->setComponentDescription(unit);
    if (!record->loadInfo()) {
        tellThatUnitCannotBeOpened(); // and again at every scan: it gets no record
        return;
    }
    if (const QString identifier = _identifierOf(unit); !identifier.isEmpty())
        record->setIdentifier(identifier);
    // The warning names the unit as the graylist does, not as it calls itself.
    if (const auto name = _nameOfGraylistEntryForComponentDescription(unit); name && m_validation.userIgnores(*name))
        record->setIgnore(true);
    m_catalog.append(record);
    _saveDatabase();
    if (m_validation.isSkipped() || record->ignore())
        return;
    const auto number = [](quint32 code) { return QString::number(static_cast<qint32>(code)); };
    const QString name = record->name();
    if (!m_validation.validate(*record, {number(unit.type()), number(unit.subtype()), number(unit.manufacturer())},
                               name, name))
        m_catalog.remove(*record);
    if (record->componentDescription() != unit)
        m_catalog.forgetKeys();
    _saveDatabase();
}

void QWAUManager::Private::_saveDatabase()
{
    m_catalog.save();
}

std::shared_ptr<QWAUDescription>
QWAUManager::Private::_descriptionWithComponentDescription(const QWComponentDescription &description)
{
    return m_catalog.find(description);
}

std::optional<QString>
QWAUManager::Private::_nameOfGraylistEntryForComponentDescription(const QWComponentDescription &description)
{
    if (!m_graylist)
        m_graylist = platform::PropertyList::arrayFromFile(
            platform::Bundle::forClassOf(m_owner).pathForResource(qw::audioUnitFormat.graylist, "plist"));
    for (const QVariant &element : std::as_const(*m_graylist)) {
        const QVariantMap entry = element.toMap();
        if (signedWord(entry["subtype"]) == static_cast<qint32>(description.subtype()) &&
            signedWord(entry["manufacturer"]) == static_cast<qint32>(description.manufacturer()))
            return entry["name"].typeId() == QMetaType::QString ? std::optional(entry["name"].toString())
                                                                : std::nullopt;
    }
    return std::nullopt;
}

QString QWAUManager::Private::_identifierOf(const QWComponentDescription &description)
{
    if (!m_identifiers) {
        m_identifiers = std::make_unique<qw::ComponentIdentifiers>();
        for (const char *folder : componentFolders)
            m_identifiers->loadFromDirectory(folder);
    }
    return m_identifiers->identifierOf(description);
}

std::unique_ptr<QMenu> QWAUManager::instrumentsMenuWithTargetAction(QObject *target,
                                                                    const platform::Selector &action) const
{
    return d->_menuWithTargetActionIsInstrument(target, action, true);
}

std::unique_ptr<QMenu> QWAUManager::effectsMenuWithTargetAction(QObject *target, const platform::Selector &action) const
{
    return d->_menuWithTargetActionIsInstrument(target, action, false);
}

/// Without units the menu stays empty on purpose: no placeholder, unlike the VST menus.
std::unique_ptr<QMenu> QWAUManager::Private::_menuWithTargetActionIsInstrument(QObject *target,
                                                                               const platform::Selector &action,
                                                                               bool isInstrument) const
{
    qw::PluginMenu menu(target, action);
    for (const auto &record : m_catalog.records()) {
        if (record->ignore() || record->isPlayer() || record->isInstrument() != isInstrument)
            continue;
        qw::PluginMenu::Folder *folder = menu.folder(menu.top(), record->manufacturer());
        qw::PluginMenu::addItem(*folder, record->name(), QVariant::fromValue(record->componentDescription()));
    }
    return menu.take();
}
