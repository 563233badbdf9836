#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QByteArray>
#include <QString>

#include <optional>

namespace qw
{

/// By what takes are sorted. A value.
struct QWUTILITIES_TEST_EXPORT SortDescriptor
{
    QString key; ///< Identifier of a column.
    bool ascending = true;

    SortDescriptor reversed() const { return {key, !ascending}; }

    /// For the user's defaults.
    QByteArray archived() const;

    /// What was archived; none for anything else.
    static std::optional<SortDescriptor> unarchived(const QByteArray &data);

    friend bool operator==(const SortDescriptor &, const SortDescriptor &) = default;
};

} // namespace qw
