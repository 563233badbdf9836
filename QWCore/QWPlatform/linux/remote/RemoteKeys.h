#pragma once

#include "InputDeviceCalls.h"

#include <QWPlatform/qwplatform_private.h>

#include <array>
#include <vector>

namespace platform
{

/// What an element of the receiver reports.
struct RemoteElementValue
{
    quint32 cookie;
    qint32 value;

    bool operator==(const RemoteElementValue &) const = default;
};

enum class RemoteKeyState
{
    Up,
    Pressed, ///< Not long enough for a repeat.
    Held
};

/// Turns the keys that the kernel makes of the remote's buttons into what the receiver's own elements report: for most
/// buttons, one element for a short press, which is only known when it ends, and another for a hold.
class QWPLATFORM_TEST_EXPORT RemoteKeys
{
public:
    /// The elements of a device that has @p keys, in the order of the table.
    static std::vector<quint32> cookiesOfKeys(const KeyBits &keys);

    /// @p value is 1 for a press, 2 for a repeat, 0 for a release. None for keys that no button sends, and for repeats
    /// and releases of a key that was down already when listening began.
    std::optional<RemoteElementValue> translate(unsigned code, qint32 value);

    /// What @p down, the keys that are down after some events were lost, makes up for them.
    std::vector<RemoteElementValue> catchUp(const KeyBits &down);

    /// Ends what listeners were told to be down, after which every key is up.
    std::vector<RemoteElementValue> releaseAll();

private:
    static constexpr size_t keyCount = 7;
    std::array<RemoteKeyState, keyCount> m_states{}; ///< In the order of the table.
};

} // namespace platform
