#pragma once

#include <QtGlobal>

#include <optional>

namespace qw
{

/// What listeners hear of one event of the remote: a down, an up, or both in this order.
struct RemoteButtonCalls
{
    unsigned button; ///< 0 to 5.
    bool down;
    bool up;

    bool operator==(const RemoteButtonCalls &) const = default;
};

/// None for a cookie or a value that means nothing.
std::optional<RemoteButtonCalls> remoteButtonCalls(quint32 cookie, qint32 value);

} // namespace qw
