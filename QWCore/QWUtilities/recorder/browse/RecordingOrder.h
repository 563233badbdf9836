#pragma once

#include "QWUtilities/recorder/model/RecordingList.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace qw
{

/// The takes of a list in the order of one of their values; made once, then good for both directions and any search.
class RecordingOrder
{
public:
    /// Ascending by the value of @p key, missing ones and "not a number" first; equal ones as in the list. As in the
    /// list where @p key is no column's.
    RecordingOrder(const RecordingList &list, const QString &key);

    /// Places in the list of the takes that @p isShown says yes to, an answer for each; all where it is empty.
    std::vector<uint32_t> takes(bool ascending, const std::vector<bool> &isShown) const;

private:
    template <class Order>
    void _make(const Order &order, size_t count);

    std::vector<uint32_t> m_ascending;
    std::vector<bool> m_beginsGroup; ///< Whether the take at that place of the order is greater than the one before.
};

} // namespace qw
