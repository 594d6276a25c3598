#include "platform/x11/atoms.h"

#include "platform/x11/connection.h"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace brisk::x11 {

Atoms::Atoms(Connection& connection) {
    const std::pair<const char*, xcb_atom_t Atoms::*> names[] = {
        {"UTF8_STRING", &Atoms::utf8String},
        {"_NET_SUPPORTED", &Atoms::netSupported},
        {"_NET_SUPPORTING_WM_CHECK", &Atoms::netSupportingWindowManagerCheck},
        {"_NET_CLIENT_LIST", &Atoms::netClientList},
        {"_NET_CLIENT_LIST_STACKING", &Atoms::netClientListStacking},
        {"_NET_ACTIVE_WINDOW", &Atoms::netActiveWindow},
        {"_NET_MOVERESIZE_WINDOW", &Atoms::netMoveResizeWindow},
        {"_NET_REQUEST_FRAME_EXTENTS", &Atoms::netRequestFrameExtents},
        {"_NET_FRAME_EXTENTS", &Atoms::netFrameExtents},
        {"_GTK_FRAME_EXTENTS", &Atoms::gtkFrameExtents},
        {"_NET_WM_PID", &Atoms::netWindowProcessID},
        {"_NET_WM_WINDOW_TYPE", &Atoms::netWindowType},
        {"_NET_WM_WINDOW_TYPE_DESKTOP", &Atoms::netWindowTypeDesktop},
        {"_NET_WM_WINDOW_TYPE_DOCK", &Atoms::netWindowTypeDock},
        {"_NET_WM_STATE", &Atoms::netWindowState},
        {"_NET_WM_STATE_MAXIMIZED_VERT", &Atoms::netWindowStateMaximizedVertically},
        {"_NET_WM_STATE_MAXIMIZED_HORZ", &Atoms::netWindowStateMaximizedHorizontally},
        {"_NET_WM_STATE_FULLSCREEN", &Atoms::netWindowStateFullscreen},
        {"_NET_WM_ALLOWED_ACTIONS", &Atoms::netAllowedActions},
        {"_NET_WM_ACTION_MOVE", &Atoms::netActionMove},
        {"_NET_WM_ACTION_RESIZE", &Atoms::netActionResize},
        {"_NET_WM_STRUT", &Atoms::netStrut},
        {"_NET_WM_STRUT_PARTIAL", &Atoms::netStrutPartial},
    };
    std::vector<xcb_intern_atom_cookie_t> cookies;
    for (const auto& [name, member] : names) {
        cookies.push_back(xcb_intern_atom(connection.xcb(), 0, static_cast<std::uint16_t>(std::strlen(name)), name));
    }
    auto cookie = cookies.begin();
    for (const auto& [name, member] : names) {
        const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection.xcb(), *cookie++, nullptr)};
        this->*member = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
}

} // namespace brisk::x11
