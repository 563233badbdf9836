#include "RemoteKeys.h"

#include <algorithm>

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

constexpr std::array<RemoteKey, 7> keyTable{{
    {KEY_MENU, 20, 18, false},
    {KEY_PLAYPAUSE, 21, 35, false},
    {KEY_ENTER, 21, 35, false}, // the centre button of later remotes
    {KEY_BACK, 23, 3, true},
    {KEY_FORWARD, 22, 4, true},
    {KEY_VOLUMEUP, 29, 0, false},
    {KEY_VOLUMEDOWN, 30, 0, false},
}};

void addOnce(std::vector<quint32> &cookies, quint32 cookie)
{
    if (cookie != 0 && std::find(cookies.begin(), cookies.end(), cookie) == cookies.end())
        cookies.push_back(cookie);
}
} // namespace

std::vector<quint32> RemoteKeys::cookiesOfKeys(const KeyBits &keys)
{
    std::vector<quint32> cookies;
    for (const RemoteKey &key : keyTable) {
        if (!keys[key.code])
            continue;
        addOnce(cookies, key.pressCookie);
        addOnce(cookies, key.holdCookie);
    }
    return cookies;
}

std::optional<RemoteElementValue> RemoteKeys::translate(unsigned code, qint32 value)
{
    static_assert(keyTable.size() == keyCount);
    const auto key = std::find_if(keyTable.begin(), keyTable.end(), [&](const RemoteKey &k) { return k.code == code; });
    if (key == keyTable.end())
        return std::nullopt;
    State &state = m_states[size_t(key - keyTable.begin())];
    if (value == 1 && state == State::Up) {
        state = State::Pressed;
        return key->followsKey() ? std::optional(RemoteElementValue{key->pressCookie, 1}) : std::nullopt;
    }
    if (value == 2 && state == State::Pressed && !key->followsKey()) {
        state = State::Held;
        return RemoteElementValue{key->holdCookie, 1};
    }
    if (value != 0)
        return std::nullopt;
    const State before = std::exchange(state, State::Up);
    if (before == State::Pressed)
        return RemoteElementValue{key->pressCookie, key->followsKey() ? 0 : 1};
    if (before == State::Held && key->tellsEndOfHold)
        return RemoteElementValue{key->holdCookie, 0};
    return std::nullopt;
}

std::vector<RemoteElementValue> RemoteKeys::catchUp(const KeyBits &down)
{
    std::vector<RemoteElementValue> values;
    for (const RemoteKey &key : keyTable)
        if (const auto value = translate(key.code, down[key.code] ? 1 : 0))
            values.push_back(*value);
    return values;
}

std::vector<RemoteElementValue> RemoteKeys::releaseAll()
{
    std::vector<RemoteElementValue> values;
    for (size_t i = 0; i < keyCount; ++i) {
        const bool isTold = keyTable[i].followsKey() || m_states[i] == State::Held;
        const auto value = translate(keyTable[i].code, 0);
        if (isTold && value)
            values.push_back(*value);
    }
    return values;
}

} // namespace platform
