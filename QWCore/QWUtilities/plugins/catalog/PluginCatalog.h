#pragma once

#include "CatalogFile.h"
#include "CatalogReader.h"

#include <QWBase/QWCatalogRecord.h>

#include <QHash>

#include <memory>
#include <vector>

namespace qw
{

/// The records of one catalog in their order, the file that holds them, and an index by key. @p Key gives the key of a
/// record: `static KeyType of(const Record &)`.
template <class Record, class Key>
class PluginCatalog
{
public:
    using RecordPointer = std::shared_ptr<Record>;
    using KeyType = std::decay_t<decltype(Key::of(std::declval<const Record &>()))>;

    /// Reads the records of the file at @p path (a real path); a missing or unreadable one gives none.
    explicit PluginCatalog(const QString &path)
        : m_file(path)
    {
        if (const auto data = m_file.read())
            CatalogReader::read(*data,
                                {[this]() -> QWCatalogRecord & { return _make(); }, [this] { m_records.clear(); }});
        _place(0);
    }

    const std::vector<RecordPointer> &records() const { return m_records; }

    /// The first record with @p key, or null.
    RecordPointer find(const KeyType &key)
    {
        if (!m_isIndexed)
            _index();
        const auto found = m_index.constFind(key);
        return found == m_index.constEnd() ? nullptr : m_records[*found];
    }

    void append(const RecordPointer &record)
    {
        m_records.push_back(record);
        _place(m_records.size() - 1);
        if (m_isIndexed)
            _enter(m_records.size() - 1);
    }

    /// Drops the records for which @p isStale is true; false when there are none.
    template <class Predicate>
    bool removeIf(Predicate isStale)
    {
        const auto stale = [&](const RecordPointer &record) { return isStale(*record); };
        const auto first = std::find_if(m_records.begin(), m_records.end(), stale);
        if (first == m_records.end())
            return false;
        const auto place = static_cast<std::size_t>(first - m_records.begin());
        (*first)->setPlace(nullptr, 0);
        auto kept = first;
        for (auto record = first + 1; record != m_records.end(); ++record) {
            if (stale(*record))
                (*record)->setPlace(nullptr, 0);
            else
                *kept++ = std::move(*record);
        }
        m_records.erase(kept, m_records.end());
        _place(place);
        forgetKeys();
        return true;
    }

    /// Drops @p record.
    void remove(const Record &record)
    {
        removeIf([&record](const Record &other) { return &other == &record; });
    }

    /// To be called when the key of a record may have changed.
    void forgetKeys()
    {
        m_index.clear();
        m_isIndexed = false;
    }

    void save()
    {
        m_file.save(m_records.size(), m_changes->first,
                    [this](std::size_t i) -> const QWCatalogRecord & { return *m_records[i]; });
        m_changes->first = m_records.size();
    }

private:
    QWCatalogRecord &_make() { return *m_records.emplace_back(std::make_shared<Record>()); }

    /// Tells the records from @p first on where they stand; they count as changed.
    void _place(std::size_t first)
    {
        for (std::size_t i = first; i < m_records.size(); ++i)
            m_records[i]->setPlace(m_changes, i);
        m_changes->first = std::min(m_changes->first, first);
    }

    void _index()
    {
        m_index.reserve(static_cast<qsizetype>(m_records.size()));
        for (std::size_t i = 0; i < m_records.size(); ++i)
            _enter(i);
        m_isIndexed = true;
    }

    void _enter(std::size_t place)
    {
        const KeyType &key = Key::of(*m_records[place]);
        if (!m_index.contains(key))
            m_index.insert(key, place);
    }

    CatalogFile m_file;
    std::vector<RecordPointer> m_records; ///< In order of addition.
    std::shared_ptr<QWCatalogRecord::Changes> m_changes = std::make_shared<QWCatalogRecord::Changes>();
    QHash<KeyType, std::size_t> m_index; ///< Place of the first record with a key.
    bool m_isIndexed = false;
};

} // namespace qw
