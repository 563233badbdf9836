#include "RemoteKeys.h"

#include <algorithm>
#include <utility>

namespace platform
{

namespace
{
struct RemoteKey
{
    unsigned code;
    quint32 pressCookie;
    quint32 holdCookie; ///< 0: the press element itself is 1 while the key is down, and 0 afterwards.
    bool tellsEndOfHold;

    bool followsKey() const { return holdCookie == 0; }
};

constexpr std::array<RemoteKey, 7> remoteKeys{{
    {KEY_MENU, 20, 18, false},
    {KEY_PLAYPAUSE, 21, 35, false},
    {KEY_ENTER, 21, 35, false}, // the centre button of later remotes
    {KEY_BACK, 23, 3, true},
    {KEY_FORWARD, 22, 4, true},
    {KEY_VOLUMEUP, 29, 0, false},
    {KEY_VOLUMEDOWN, 30, 0, false},
}};

std::optional<RemoteElementValue> pressed(const RemoteKey &key, RemoteKeyState &state)
{
    if (state != RemoteKeyState::Up)
        return std::nullopt;
    state = RemoteKeyState::Pressed;
    return key.followsKey() ? std::optional(RemoteElementValue{key.pressCookie, 1}) : std::nullopt;
}

/// The first repeat makes a hold of the press.
std::optional<RemoteElementValue> repeated(const RemoteKey &key, RemoteKeyState &state)
{
    if (state != RemoteKeyState::Pressed || key.followsKey())
        return std::nullopt;
    state = RemoteKeyState::Held;
    return RemoteElementValue{key.holdCookie, 1};
}

std::optional<RemoteElementValue> released(const RemoteKey &key, RemoteKeyState before)
{
    if (before == RemoteKeyState::Pressed)
        return RemoteElementValue{key.pressCookie, key.followsKey() ? 0 : 1};
    if (before == RemoteKeyState::Held && key.tellsEndOfHold)
        return RemoteElementValue{key.holdCookie, 0};
    return std::nullopt;
}

void addOnce(std::vector<quint32> &cookies, quint32 cookie)
{
    if (cookie != 0 && std::find(cookies.begin(), cookies.end(), cookie) == cookies.end())
        cookies.push_back(cookie);
}
} // namespace

std::vector<quint32> RemoteKeys::cookiesOfKeys(const KeyBits &keys)
{
    std::vector<quint32> cookies;
    for (const RemoteKey &key : remoteKeys) {
        if (!keys[key.code])
            continue;
        addOnce(cookies, key.pressCookie);
        addOnce(cookies, key.holdCookie);
    }
    return cookies;
}

std::optional<RemoteElementValue> RemoteKeys::translate(unsigned code, qint32 value)
{
    static_assert(remoteKeys.size() == keyCount);
    const auto key =
        std::find_if(remoteKeys.begin(), remoteKeys.end(), [&](const RemoteKey &k) { return k.code == code; });
    if (key == remoteKeys.end())
        return std::nullopt;
    RemoteKeyState &state = m_states[size_t(key - remoteKeys.begin())];
    switch (value) {
    case 0:
        return released(*key, std::exchange(state, RemoteKeyState::Up));
    case 1:
        return pressed(*key, state);
    case 2:
        return repeated(*key, state);
    default:
        return std::nullopt;
    }
}

std::vector<RemoteElementValue> RemoteKeys::catchUp(const KeyBits &down)
{
    std::vector<RemoteElementValue> values;
    for (const RemoteKey &key : remoteKeys)
        if (const auto value = translate(key.code, down[key.code] ? 1 : 0))
            values.push_back(*value);
    return values;
}

std::vector<RemoteElementValue> RemoteKeys::releaseAll()
{
    std::vector<RemoteElementValue> values;
    for (size_t i = 0; i < keyCount; ++i) {
        const bool isTold = remoteKeys[i].followsKey() || m_states[i] == RemoteKeyState::Held;
        const auto value = translate(remoteKeys[i].code, 0);
        if (isTold && value)
            values.push_back(*value);
    }
    return values;
}

} // namespace platform
