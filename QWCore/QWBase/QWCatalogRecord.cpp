#include "QWCatalogRecord.h"

#include "QWBase/records/StateWriter.h"

#include <algorithm>

namespace
{
class MapWriter : public qw::StateWriter
{
public:
    void setString(QLatin1StringView key, const QString &value) override { map.insert(key, value); }
    void setBoolean(QLatin1StringView key, bool value) override { map.insert(key, value); }
    void setInteger(QLatin1StringView key, qint64 value) override { map.insert(key, value); }
    void setData(QLatin1StringView key, QByteArrayView value) override { map.insert(key, value.toByteArray()); }

    QVariantMap map;
};

/// Truth as lists in the old text form have it, which know only texts.
bool meansTrue(const QString &text)
{
    return text == QLatin1StringView("1") || text == QLatin1StringView("YES");
}
} // namespace

QWCatalogRecord::QWCatalogRecord() = default;
QWCatalogRecord::~QWCatalogRecord() = default;

void QWCatalogRecord::setIgnore(bool ignore)
{
    set(m_ignore, ignore);
}

QVariantMap QWCatalogRecord::state() const
{
    MapWriter writer;
    writeState(writer);
    return writer.map;
}

void QWCatalogRecord::setState(const QVariantMap &state)
{
    for (auto entry = state.begin(); entry != state.end(); ++entry)
        setValueForKey(entry.key().toUtf8().toStdString(), entry.value());
}

void QWCatalogRecord::setValueForKey(std::string_view key, const QVariant &value)
{
    if (key == "ignore")
        setIfBoolean(m_ignore, value);
    else
        applyValueForKey(key, value);
}

void QWCatalogRecord::setPlace(std::shared_ptr<Changes> changes, std::size_t index)
{
    m_changes = std::move(changes);
    m_index = index;
}

void QWCatalogRecord::changed()
{
    if (m_changes)
        m_changes->first = std::min(m_changes->first, m_index);
}

void QWCatalogRecord::setIfString(std::optional<QString> &field, const QVariant &value)
{
    if (value.typeId() == QMetaType::QString)
        set(field, std::optional(value.toString()));
}

void QWCatalogRecord::setIfInteger(std::optional<qint64> &field, const QVariant &value)
{
    bool fits = value.typeId() != QMetaType::Bool; // texts that are numbers do
    const qint64 number = fits ? value.toLongLong(&fits) : 0;
    if (fits)
        set(field, std::optional(number));
}

void QWCatalogRecord::setIfBoolean(bool &field, const QVariant &value)
{
    if (value.typeId() == QMetaType::QString) {
        if (meansTrue(value.toString())) // any other text counts as absent, as other values of a wrong type do
            set(field, true);
        return;
    }
    std::optional<qint64> number; // some writers store truth as a number
    setIfInteger(number, value);
    if (number || value.typeId() == QMetaType::Bool)
        set(field, value.toBool());
}
