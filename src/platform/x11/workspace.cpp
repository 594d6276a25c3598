#include "platform/x11/workspace.h"

#include "platform/x11/running_application.h"

#include <unistd.h>

namespace brisk::x11 {

RunningApplicationRef Workspace::frontmostApplication() {
    tracker_.synchronize();
    auto window = tracker_.activeWindow();
    if (!window && !tracker_.hasActiveWindow()) {
        window = windowWithInputFocus();
    }
    return window ? std::make_shared<RunningApplication>(window) : nullptr;
}

ProcessIdentifier Workspace::processIdentifier() const {
    return getpid();
}

/// Where the window manager names no active window, or there is none: the top-level window that holds the input focus.
WindowRef Workspace::windowWithInputFocus() {
    xcb_connection_t* xcb = connection_.xcb();
    const Reply<xcb_get_input_focus_reply_t> focus{xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr)};
    connection_.dispatchQueuedEvents();
    xcb_window_t id = focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
    // Up from the focus, towards the root: the first client on the way, or, where no window manager names clients, the
    // last window before the root. Bounded, since the tree may change underway.
    constexpr int maximumDepth = 64;
    for (int depth = 0; depth < maximumDepth && id > XCB_INPUT_FOCUS_POINTER_ROOT && id != connection_.root();
         ++depth) {
        const Reply<xcb_query_tree_reply_t> tree{xcb_query_tree_reply(xcb, xcb_query_tree(xcb, id), nullptr)};
        if (!tree) {
            return nullptr;
        }
        if (windowManager_.isPresent() ? tracker_.isClient(id) : tree->parent == connection_.root()) {
            const auto window = tracker_.find(id);
            return window && window->isFocusable ? window : nullptr;
        }
        id = tree->parent;
    }
    return nullptr;
}

} // namespace brisk::x11
