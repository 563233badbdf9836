#pragma once

#include "QWCatalogRecord.h"

#include <QMetaType>
#include <QString>

#include <memory>
#include <optional>

/// One VST plug-in bundle. Its state dictionary:
///
///     path               string   always; full path as the scan found it, a leading "~" kept
///     ignore             boolean  always
///     isInstrument       boolean  always
///     modificationDate   integer  nanoseconds since 1970 UTC, exactly the file system's
///     name, vendor       string   as the plug-in tells them
///     category, flags,   integer  as the plug-in tells them
///     uniqueID
///
/// The last seven are written when the record holds a value. The path is the record's identity: a state sets it only
/// while the record has none, so that what the validator leaves, which knows the expanded path, cannot rename it. The
/// members stand here for the reason that QWCatalogRecord gives.
class QWBASE_EXPORT QWVSTDescription : public QWCatalogRecord
{
public:
    /// A record for the bundle at @p path, with the modification date it has now.
    static std::shared_ptr<QWVSTDescription> descriptionWithPath(const QString &path);

    /// A record with what @p state holds, as a catalog file has it.
    static std::shared_ptr<QWVSTDescription> descriptionWithState(const QVariantMap &state);

    QWVSTDescription();
    ~QWVSTDescription() override;

    /// As the scan found the bundle, a leading "~" kept; see platform::Locations::mapped().
    const QString &path() const { return m_path; }

    /// Nanoseconds since 1970 UTC, of the bundle when the record was made or last validated; none when it could not be
    /// read.
    std::optional<qint64> modificationDate() const { return m_modificationDate; }

    /// Whether it plays notes; else it is an effect.
    bool isInstrument() const { return m_isInstrument; }
    void setInstrument(bool isInstrument); ///< Sets isInstrument().

    /// @{
    /// As the plug-in tells it; "" when it was not asked.
    QString name() const { return m_name.value_or(QString()); }
    QString vendor() const { return m_vendor.value_or(QString()); }
    /// @}

    void setName(const QString &name);     ///< Sets name().
    void setVendor(const QString &vendor); ///< Sets vendor().

    /// @{
    /// Number of the plug-in interface; none when the plug-in was not asked.
    std::optional<qint64> category() const { return m_category; }
    std::optional<qint64> flags() const { return m_flags; }
    std::optional<qint64> uniqueID() const { return m_uniqueID; }
    /// @}

    void setCategory(qint64 category); ///< Sets category().
    void setFlags(qint64 flags);       ///< Sets flags().
    void setUniqueID(qint64 uniqueID); ///< Sets uniqueID().

    /// @cond For the catalog.
    void writeState(qw::StateWriter &writer) const override;

protected:
    void applyValueForKey(std::string_view key, const QVariant &value) override;
    /// @endcond

private:
    struct StringField;
    struct IntegerField;

    QString m_path;
    bool m_isInstrument = false;
    std::optional<qint64> m_modificationDate;
    std::optional<QString> m_name;
    std::optional<QString> m_vendor;
    std::optional<qint64> m_category;
    std::optional<qint64> m_flags;
    std::optional<qint64> m_uniqueID;
};

Q_DECLARE_METATYPE(std::shared_ptr<QWVSTDescription>)
