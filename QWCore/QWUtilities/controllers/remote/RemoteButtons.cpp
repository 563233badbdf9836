#include "RemoteButtons.h"

#include <algorithm>
#include <array>

namespace qw
{

namespace
{
struct RemoteButtonRow
{
    quint32 cookie;
    qint32 value;
    RemoteButtonCalls calls; // button, down, up
};

// Menu and play report a hold, but never its end: their hold gives a down without an up. Intended.
constexpr std::array<RemoteButtonRow, 14> buttonRows{{
    {20, 1, {0, true, true}}, // menu
    {18, 1, {0, true, false}},
    {21, 1, {1, true, true}}, // play
    {35, 1, {1, true, false}},
    {29, 1, {2, true, false}}, // plus
    {29, 0, {2, false, true}},
    {30, 1, {3, true, false}}, // minus
    {30, 0, {3, false, true}},
    {23, 1, {4, true, true}}, // previous
    {3, 1, {4, true, false}},
    {3, 0, {4, false, true}},
    {22, 1, {5, true, true}}, // next
    {4, 1, {5, true, false}},
    {4, 0, {5, false, true}},
}};
} // namespace

std::optional<RemoteButtonCalls> remoteButtonCalls(quint32 cookie, qint32 value)
{
    const auto row = std::find_if(buttonRows.begin(), buttonRows.end(),
                                  [&](const RemoteButtonRow &r) { return r.cookie == cookie && r.value == value; });
    return row == buttonRows.end() ? std::nullopt : std::optional(row->calls);
}

} // namespace qw
