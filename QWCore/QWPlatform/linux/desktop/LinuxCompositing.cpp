#include "QWPlatform/appkit/windows/Compositing.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace platform
{

namespace
{
/// Whoever owns this selection is the compositor.
constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

template <class Reply>
auto owned(Reply *reply)
{
    return std::unique_ptr<Reply, decltype(&std::free)>(reply, &std::free);
}

bool hasCompositor(xcb_connection_t *display)
{
    const auto atomRequest =
        xcb_intern_atom(display, true, static_cast<uint16_t>(compositorSelection.size()), compositorSelection.data());
    const auto atom = owned(xcb_intern_atom_reply(display, atomRequest, nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const auto ownerRequest = xcb_get_selection_owner(display, atom->atom);
    const auto owner = owned(xcb_get_selection_owner_reply(display, ownerRequest, nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}
} // namespace

bool isCompositing()
{
    if (QGuiApplication::platformName() != "xcb") // the offscreen platform offers the interface, too, and dies in it
        return true;
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return !x11 || hasCompositor(x11->connection());
}

} // namespace platform
