#include "platform/x11/native_windows.h"

#include "platform/x11/events.h"

#include <xcb/shape.h>
#include <xcb/xfixes.h>

#include <array>
#include <cmath>
#include <string>
#include <utility>

namespace brisk::x11 {

namespace {

/// Rounds edges, not sizes, so that neighbours still touch.
xcb_rectangle_t toPixels(const CGRect& rect) {
    const auto left = std::lround(rect.minX());
    const auto top = std::lround(rect.minY());
    return {.x = static_cast<std::int16_t>(left),
            .y = static_cast<std::int16_t>(top),
            .width = static_cast<std::uint16_t>(std::lround(rect.maxX()) - left),
            .height = static_cast<std::uint16_t>(std::lround(rect.maxY()) - top)};
}

xcb_window_t xcbWindow(NativeWindowID window) {
    return static_cast<xcb_window_t>(window);
}

} // namespace

NativeWindows::NativeWindows(Connection& connection, Displays& displays)
    : connection_(connection),
      displays_(displays),
      subscription_(connection.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); })) {
    watchCompositor();
}

void NativeWindows::setFrame(NativeWindowID window, const CGRect& frame) {
    // The root window's corner in AppKit coordinates: from there its pixels count down.
    const CGPoint corner = displays_.toAppKit({.x = 0, .y = 0});
    const xcb_rectangle_t pixels =
        toPixels({.origin = {.x = frame.minX() - corner.x, .y = corner.y - frame.maxY()}, .size = frame.size});
    const std::array<std::uint32_t, 4> values{static_cast<std::uint32_t>(pixels.x),
                                              static_cast<std::uint32_t>(pixels.y), pixels.width, pixels.height};
    finish(xcb_configure_window_checked(
        connection_.xcb(), xcbWindow(window),
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data()));
    if (front_ == window) {
        front_.reset();
    }
}

void NativeWindows::orderFrontRegardless(NativeWindowID window) {
    if (std::exchange(front_, window) != window) {
        askAgainForFront();
        xcb_flush(connection_.xcb());
    }
}

void NativeWindows::askAgainForFront() {
    if (front_) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_.xcb(), xcbWindow(*front_), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
}

void NativeWindows::setShape(NativeWindowID window, const std::optional<std::vector<CGRect>>& shape) {
    if (!connection_.has(xcb_shape_id)) {
        return;
    }
    if (!shape) {
        finish(xcb_shape_mask_checked(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, xcbWindow(window), 0,
                                      0, XCB_PIXMAP_NONE));
        return;
    }
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(shape->size());
    for (const CGRect& rect : *shape) {
        rectangles.push_back(toPixels(rect));
    }
    finish(xcb_shape_rectangles_checked(connection_.xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                                        XCB_CLIP_ORDERING_UNSORTED, xcbWindow(window), 0, 0,
                                        static_cast<std::uint32_t>(rectangles.size()), rectangles.data()));
}

void NativeWindows::setCompositingChangedHandler(std::function<void()> handler) {
    compositingChanged_ = std::move(handler);
}

void NativeWindows::watchCompositor() {
    const std::string name = "_NET_WM_CM_S" + std::to_string(connection_.screenNumber());
    const Reply<xcb_intern_atom_reply_t> atom{xcb_intern_atom_reply(
        connection_.xcb(), xcb_intern_atom(connection_.xcb(), 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr)};
    compositorSelection_ = atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};

    const auto* extension = xcb_get_extension_data(connection_.xcb(), &xcb_xfixes_id);
    if (extension != nullptr && extension->present != 0) {
        // The extension ignores a client that has not said which version it speaks.
        const Reply<xcb_xfixes_query_version_reply_t> version{xcb_xfixes_query_version_reply(
            connection_.xcb(), xcb_xfixes_query_version(connection_.xcb(), 5, 0), nullptr)};
        selectionNotify_ = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
        xcb_xfixes_select_selection_input(connection_.xcb(), connection_.root(), compositorSelection_,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    // Asked after events were selected, so that no change falls in between.
    const Reply<xcb_get_selection_owner_reply_t> owner{xcb_get_selection_owner_reply(
        connection_.xcb(), xcb_get_selection_owner(connection_.xcb(), compositorSelection_), nullptr)};
    isCompositingActive_ = owner && owner->owner != XCB_WINDOW_NONE;
}

void NativeWindows::handle(const xcb_generic_event_t& event) {
    if (selectionNotify_ == 0 || typeOf(event) != selectionNotify_) {
        return;
    }
    const auto& notify = as<xcb_xfixes_selection_notify_event_t>(event);
    if (notify.selection != compositorSelection_) {
        return;
    }
    const bool isActive = notify.owner != XCB_WINDOW_NONE;
    if (std::exchange(isCompositingActive_, isActive) != isActive && compositingChanged_) {
        compositingChanged_();
    }
}

void NativeWindows::finish(xcb_void_cookie_t request) {
    const Reply<xcb_generic_error_t> error{xcb_request_check(connection_.xcb(), request)};
}

} // namespace brisk::x11
