#include "LinuxKeyboardState.h"

#include "HeldKeys.h"
#include "QWPlatform/appkit/events/PendingInput.h"
#include "QWPlatform/linux/remote/KeyCodes.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

namespace platform
{

namespace
{
/// Qt's own connection to the X server, or null on other window systems.
xcb_connection_t *xConnection()
{
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    auto *x11 = application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

KeyMap askServer(xcb_connection_t *connection)
{
    KeyMap map{};
    const std::unique_ptr<xcb_query_keymap_reply_t, decltype(&std::free)> reply(
        xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr), &std::free);
    for (const KeyCode &key : keyCodes()) {
        const unsigned xKey = key.evdev + xKeyOffset;
        if (reply && (reply->keys[xKey / 8] & (1u << (xKey % 8))))
            setKeyDown(map, key.code, true);
    }
    return map;
}

bool isLockedOnServer(xcb_connection_t *connection)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const std::unique_ptr<xcb_query_pointer_reply_t, decltype(&std::free)> reply(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr), &std::free);
    return reply && (reply->mask & XCB_MOD_MASK_LOCK);
}
} // namespace

LinuxKeyboardState::LinuxKeyboardState()
    : m_pendingInput(std::make_unique<PendingInput>())
{
}

LinuxKeyboardState::~LinuxKeyboardState() = default;

void LinuxKeyboardState::startWatching()
{
    if (!xConnection())
        _heldKeys();
}

KeyMap LinuxKeyboardState::keyMap()
{
    if (xcb_connection_t *connection = xConnection())
        return askServer(connection);
    HeldKeys &keys = _heldKeys();
    m_pendingInput->look([&](const QKeyEvent &event) { keys.note(event); });
    return keys.map();
}

void LinuxKeyboardState::noteKeyEvent(const QKeyEvent &event)
{
    if (m_heldKeys)
        m_heldKeys->note(event);
}

bool LinuxKeyboardState::isCapsLockOn()
{
    xcb_connection_t *connection = xConnection();
    return connection ? isLockedOnServer(connection) : _heldKeys().isCapsLockOn();
}

/// X11 and Wayland hand on the key symbol, which Shift has chosen already and Ctrl does not change.
char16_t LinuxKeyboardState::characterOf(const QKeyEvent &event)
{
    const QString windowSystem = QGuiApplication::platformName();
    if (windowSystem != "xcb" && !windowSystem.startsWith("wayland"))
        return 0;
    const char32_t code = xkb_keysym_to_utf32(event.nativeVirtualKey());
    if (code < ' ' || code == 0x7f)
        return 0;
    return QChar::requiresSurrogates(code) ? QChar::highSurrogate(code) : static_cast<char16_t>(code);
}

HeldKeys &LinuxKeyboardState::_heldKeys()
{
    if (!m_heldKeys)
        m_heldKeys = std::make_unique<HeldKeys>();
    return *m_heldKeys;
}

} // namespace platform
