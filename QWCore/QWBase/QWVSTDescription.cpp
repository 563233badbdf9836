#include "QWVSTDescription.h"

#include "QWBase/records/StateWriter.h"
#include "QWFile.h"

#include <utility>

struct QWVSTDescription::StringField
{
    std::string_view key;
    std::optional<QString> QWVSTDescription::*field;
};

struct QWVSTDescription::IntegerField
{
    std::string_view key;
    std::optional<qint64> QWVSTDescription::*field;
};

namespace
{
template <class Field>
void writeIfSet(qw::StateWriter &writer, QLatin1StringView key, const std::optional<Field> &field)
{
    if (!field)
        return;
    if constexpr (std::is_same_v<Field, QString>)
        writer.setString(key, *field);
    else
        writer.setInteger(key, *field);
}
} // namespace

QWVSTDescription::QWVSTDescription() = default;
QWVSTDescription::~QWVSTDescription() = default;

std::shared_ptr<QWVSTDescription> QWVSTDescription::descriptionWithPath(const QString &path)
{
    auto description = std::make_shared<QWVSTDescription>();
    description->m_path = path;
    description->m_modificationDate = QWFile::modificationDateOfFileAtPath(path);
    return description;
}

std::shared_ptr<QWVSTDescription> QWVSTDescription::descriptionWithState(const QVariantMap &state)
{
    auto description = std::make_shared<QWVSTDescription>();
    description->setState(state);
    return description;
}

void QWVSTDescription::setInstrument(bool isInstrument)
{
    set(m_isInstrument, isInstrument);
}

void QWVSTDescription::setName(const QString &name)
{
    set(m_name, std::optional(name));
}

void QWVSTDescription::setVendor(const QString &vendor)
{
    set(m_vendor, std::optional(vendor));
}

void QWVSTDescription::setCategory(qint64 category)
{
    set(m_category, std::optional(category));
}

void QWVSTDescription::setFlags(qint64 flags)
{
    set(m_flags, std::optional(flags));
}

void QWVSTDescription::setUniqueID(qint64 uniqueID)
{
    set(m_uniqueID, std::optional(uniqueID));
}

void QWVSTDescription::writeState(qw::StateWriter &writer) const
{
    writeIfSet(writer, QLatin1StringView("category"), m_category);
    writeIfSet(writer, QLatin1StringView("flags"), m_flags);
    writer.setBoolean(QLatin1StringView("ignore"), ignore());
    writer.setBoolean(QLatin1StringView("isInstrument"), m_isInstrument);
    writeIfSet(writer, QLatin1StringView("modificationDate"), m_modificationDate);
    writeIfSet(writer, QLatin1StringView("name"), m_name);
    writer.setString(QLatin1StringView("path"), m_path);
    writeIfSet(writer, QLatin1StringView("uniqueID"), m_uniqueID);
    writeIfSet(writer, QLatin1StringView("vendor"), m_vendor);
}

void QWVSTDescription::applyValueForKey(std::string_view key, const QVariant &value)
{
    static constexpr StringField strings[] = {{"name", &QWVSTDescription::m_name},
                                              {"vendor", &QWVSTDescription::m_vendor}};
    static constexpr IntegerField integers[] = {{"modificationDate", &QWVSTDescription::m_modificationDate},
                                                {"category", &QWVSTDescription::m_category},
                                                {"flags", &QWVSTDescription::m_flags},
                                                {"uniqueID", &QWVSTDescription::m_uniqueID}};
    if (key == "path" && m_path.isEmpty() && value.typeId() == QMetaType::QString)
        set(m_path, value.toString());
    if (key == "isInstrument")
        setIfBoolean(m_isInstrument, value);
    for (const StringField &field : strings)
        if (key == field.key)
            setIfString(this->*field.field, value);
    for (const IntegerField &field : integers)
        if (key == field.key)
            setIfInteger(this->*field.field, value);
}
