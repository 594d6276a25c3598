#pragma once

#include "desktop/support/desktop_connection.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"
#include "platform/simulated/main_queue.h"
#include "platform/x11/desktop.h"
#include "support/printing.h"

#include <memory>
#include <optional>
#include <string>

namespace brisk::desktop {

inline CGRect toCGRect(const PixelRect& rect) {
    return {.origin = {.x = static_cast<double>(rect.x), .y = static_cast<double>(rect.y)},
            .size = {.width = static_cast<double>(rect.width), .height = static_cast<double>(rect.height)}};
}

/// A virtual desktop with an application's windows on it, and the product's window access beside them. With one monitor
/// at the screen's origin accessibility coordinates are root coordinates.
struct WindowAccessScene {
    explicit WindowAccessScene(WindowManager::Kind kind = WindowManager::Kind::openbox,
                               PixelSize screen = {.width = 1440, .height = 900});

    /// Opens a window of `client` and waits until the user would work in it.
    xcb_window_t openInFront(const WindowDescription& description = {});
    enum class Activation { bySelf, requested };
    /// Waits until the window is the active one and the product has been told; may ask for it as a pager.
    [[nodiscard]] bool waitInFront(xcb_window_t window, Activation activation = Activation::bySelf);
    /// Waits until the window manager has carried out what it was asked before.
    void waitForRest(xcb_window_t window);
    bool allows(xcb_window_t window, const std::string& action);
    /// One turn of the product's main loop.
    void takeTurn();

    AccessibilityPlatform& accessibility() { return brisk->accessibility(); }
    /// The focused window of the application in front.
    AXUIElementRef focusedElement();
    std::optional<CGRect> readFrame(const AXUIElementRef& element);
    /// The last reading, the frame once it is the one expected: a read waits for the end of a move, yet not for ever,
    /// and a busy machine may take longer.
    std::optional<CGRect> frameOnceItIs(const CGRect& expected, const AXUIElementRef& element);
    bool writeFrame(const AXUIElementRef& element, const CGRect& frame);
    /// The result of asking for the role, which tells whether the element still exists.
    AXError role(const AXUIElementRef& element);

    VirtualServer server;
    WindowManager windowManager;
    DesktopConnection desktop;
    TestClient client;
    simulated::MainQueue queue;
    int explanations = 0;
    std::unique_ptr<x11::Desktop> brisk;
};

} // namespace brisk::desktop
