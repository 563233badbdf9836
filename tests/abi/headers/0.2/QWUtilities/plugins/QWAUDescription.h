#pragma once

#include <QWBase/QWCatalogRecord.h>
#include <QWBase/QWComponentDescription.h>
#include <QWUtilities/qwutilities_export.h>

#include <QString>

#include <memory>
#include <optional>

/// One installed Audio Unit. Its state dictionary:
///
///     componentDescription  data     always; see QWComponentDescription::state()
///     ignore                boolean  always
///     name, manufacturer,   string   when the record holds a value, which may be ""
///     identifier
///
/// Its fields lie open: catalogs of ten thousand records are read, searched and saved in one go.
class QWUTILITIES_EXPORT QWAUDescription : public QWCatalogRecord
{
public:
    /// An empty record.
    static std::shared_ptr<QWAUDescription> description();

    /// A record with the entries of @p state that are there and of the right type.
    static std::shared_ptr<QWAUDescription> descriptionWithState(const QVariantMap &state);

    QWAUDescription();           ///< Empty, in no catalog.
    ~QWAUDescription() override; ///< The catalog and the menus made from it share a record; it goes with the last.

    /// Which unit it is: the record's key in its catalog.
    const QWComponentDescription &componentDescription() const { return m_componentDescription; }

    /// In a catalog only before its next validate().
    void setComponentDescription(const QWComponentDescription &description);

    /// @name Display names
    /// A missing one is loaded with loadInfo() first, and is "" when that gives none.
    ///@{
    QString name();                                    ///< Of the unit, without its manufacturer.
    void setName(const QString &name);                 ///< Kept, "" too: it is not loaded again.
    QString manufacturer();                            ///< Its submenu's title.
    void setManufacturer(const QString &manufacturer); ///< Kept, "" too: it is not loaded again.
    ///@}

    /// Bundle identifier of the unit's bundle; "" when it was not found.
    QString identifier() const { return m_identifier.value_or(QString()); }
    void setIdentifier(const QString &identifier); ///< Kept and saved, "" too.

    /// @name By the type of the unit
    ///@{
    bool isInstrument() const { return m_componentDescription.isInstrument(); } ///< Stands in the instruments' menu.
    bool isEffect() const { return m_componentDescription.isEffect(); }         ///< An effect or a music effect.
    bool isPlayer() const { return m_componentDescription.isPlayer(); }         ///< Plays files; stands in no menu.
    ///@}

    /// Fills name and manufacturer from the component registry; false when the manufacturer is empty then.
    bool loadInfo();

    /// @cond For the catalog.
    void writeState(qw::StateWriter &writer) const override;

protected:
    void applyValueForKey(std::string_view key, const QVariant &value) override;
    /// @endcond

private:
    QWComponentDescription m_componentDescription;
    std::optional<QString> m_name;
    std::optional<QString> m_manufacturer;
    std::optional<QString> m_identifier;
};
