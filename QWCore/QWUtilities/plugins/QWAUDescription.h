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
class QWUTILITIES_EXPORT QWAUDescription : public QWCatalogRecord
{
public:
    /// An empty record.
    static std::shared_ptr<QWAUDescription> description();
    static std::shared_ptr<QWAUDescription> descriptionWithState(const QVariantMap &state);

    QWAUDescription();
    ~QWAUDescription() override;

    const QWComponentDescription &componentDescription() const { return m_componentDescription; }
    void setComponentDescription(const QWComponentDescription &description);

    /// Display names; a missing one is loaded with loadInfo() first, and is "" when that gives none.
    QString name();
    void setName(const QString &name);
    QString manufacturer();
    void setManufacturer(const QString &manufacturer);

    /// Bundle identifier of the unit's bundle; "" when it was not found.
    QString identifier() const { return m_identifier.value_or(QString()); }
    void setIdentifier(const QString &identifier);

    bool isInstrument() const { return m_componentDescription.isInstrument(); }
    bool isEffect() const { return m_componentDescription.isEffect(); }
    bool isPlayer() const { return m_componentDescription.isPlayer(); }

    /// Fills name and manufacturer from the component registry; false when the manufacturer is empty then.
    bool loadInfo();

    void writeState(QWStateWriter &writer) const override;

protected:
    void applyValueForKey(std::string_view key, const QVariant &value) override;

private:
    QWComponentDescription m_componentDescription;
    std::optional<QString> m_name;
    std::optional<QString> m_manufacturer;
    std::optional<QString> m_identifier;
};
