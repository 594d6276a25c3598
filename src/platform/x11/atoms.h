#pragma once

#include <xcb/xcb.h>

namespace brisk::x11 {

class Connection;

/// The names that window access speaks of to the server and the window manager, interned in one round trip. They come
/// from the Extended Window Manager Hints (_NET_), the client conventions (WM_) and the de facto frame shadow (_GTK_).
struct Atoms {
    explicit Atoms(Connection& connection);

    xcb_atom_t utf8String;
    xcb_atom_t netSupported;
    xcb_atom_t netSupportingWindowManagerCheck;
    xcb_atom_t netClientList;
    xcb_atom_t netClientListStacking;
    xcb_atom_t netActiveWindow;
    xcb_atom_t netMoveResizeWindow;
    xcb_atom_t netRequestFrameExtents;
    xcb_atom_t netFrameExtents;
    xcb_atom_t gtkFrameExtents;
    xcb_atom_t netWindowProcessID;
    xcb_atom_t netWindowType;
    xcb_atom_t netWindowTypeDesktop;
    xcb_atom_t netWindowTypeDock;
    xcb_atom_t netWindowState;
    xcb_atom_t netWindowStateMaximizedVertically;
    xcb_atom_t netWindowStateMaximizedHorizontally;
    xcb_atom_t netWindowStateFullscreen;
    xcb_atom_t netAllowedActions;
    xcb_atom_t netActionMove;
    xcb_atom_t netActionResize;
    xcb_atom_t netStrut;
    xcb_atom_t netStrutPartial;
};

} // namespace brisk::x11
