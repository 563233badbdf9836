#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QByteArray>

#include <functional>

class QWCatalogRecord;

namespace qw
{

/// Reads catalog files: XML in one pass, without a tree between, any other property list by way of one.
class QWUTILITIES_TEST_EXPORT CatalogReader
{
public:
    /// Makes the next record and keeps it; and throws all away that were made so far.
    struct Records
    {
        std::function<QWCatalogRecord &()> make;
        std::function<void()> clear;
    };

    /// One record for each dictionary of the array in @p data; elements of other types are passed over. No records when
    /// @p data is no array or no whole property list.
    static void read(const QByteArray &data, const Records &records);
};

} // namespace qw
