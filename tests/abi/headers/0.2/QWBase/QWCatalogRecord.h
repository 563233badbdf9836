#pragma once

#include <QWBase/qwbase_export.h>

#include <QVariant>

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace qw
{
class StateWriter;
}

/// One plug-in of a catalog, which persists as a state dictionary. A record is shared by its catalog and the menus made
/// from it, and it tells its catalog when it changes, so that a save need not look at every record. Main thread.
///
/// A catalog reads 10,000 of them while the user waits, so the members stand here, without a block of memory of their
/// own.
class QWBASE_EXPORT QWCatalogRecord
{
public:
    /// @cond For the catalog.
    /// What changed in a catalog since it was saved; kept alive by its records.
    struct Changes
    {
        std::size_t first; ///< Place of the first record that changed; the number of records or more: none did.
    };
    /// @endcond

    QWCatalogRecord();
    QWCatalogRecord(const QWCatalogRecord &) = delete;
    QWCatalogRecord &operator=(const QWCatalogRecord &) = delete;
    virtual ~QWCatalogRecord();

    /// Left out of the menus and never validated.
    bool ignore() const { return m_ignore; }

    /// Sets ignore(); the catalog keeps it with its next save.
    void setIgnore(bool ignore);

    /// The dictionary for the catalog file.
    QVariantMap state() const;

    /// Applies the keys that are present; a value of the wrong type counts as absent.
    void setState(const QVariantMap &state);

    /// @cond For the catalog and for records of ours.
    /// setState() with one key, in UTF-8; unknown ones are passed over.
    void setValueForKey(std::string_view key, const QVariant &value);

    /// Hands the entries of state() to @p writer.
    virtual void writeState(qw::StateWriter &writer) const = 0;

    /// Place @p index in the catalog that looks at @p changes; called by that catalog.
    void setPlace(std::shared_ptr<Changes> changes, std::size_t index);

protected:
    /// Subclasses take their own keys here.
    virtual void applyValueForKey(std::string_view key, const QVariant &value) = 0;

    /// To be called after each change.
    void changed();

    template <class T>
    void set(T &field, T value)
    {
        field = std::move(value);
        changed();
    }

    /// Sets @p field when @p value is text; likewise the others.
    void setIfString(std::optional<QString> &field, const QVariant &value);
    void setIfInteger(std::optional<qint64> &field, const QVariant &value);
    void setIfBoolean(bool &field, const QVariant &value);
    /// @endcond

private:
    bool m_ignore = false;
    std::size_t m_index = 0;
    std::shared_ptr<Changes> m_changes;
};
