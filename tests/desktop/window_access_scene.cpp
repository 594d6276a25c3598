#include "desktop/window_access_scene.h"

#include "windows/window_accessibility.h"

#include <algorithm>

namespace brisk::desktop {

WindowAccessScene::WindowAccessScene(WindowManager::Kind kind, PixelSize screen)
    : server(screen),
      windowManager(server, kind),
      desktop(server.display()),
      client(server.display()),
      brisk(x11::Desktop::open(
          queue, [this] { ++explanations; }, server.display().c_str())) {}

xcb_window_t WindowAccessScene::openInFront(const WindowDescription& description) {
    const xcb_window_t window = client.open(description);
    if (!waitInFront(window)) {
        throw std::runtime_error("the window did not come to the front");
    }
    const char* state = description.isMaximized    ? "_NET_WM_STATE_MAXIMIZED_VERT"
                        : description.isFullscreen ? "_NET_WM_STATE_FULLSCREEN"
                                                   : nullptr;
    if (state != nullptr && !waitUntil([&] { return desktop.hasState(window, state); })) {
        throw std::runtime_error("the window did not take its state");
    }
    waitForRest(window);
    takeTurn();
    return window;
}

bool WindowAccessScene::waitInFront(xcb_window_t window, Activation activation) {
    // Asked once: more requests would pile up at a slow window manager and activate the window again later on, when
    // another has its turn.
    bool mustAsk = activation == Activation::requested;
    const bool isActive = waitUntil([&] {
        client.dispatchEvents();
        if (mustAsk && desktop.isManaged(window) && desktop.activeWindow() != window) {
            desktop.requestActivation(window);
            mustAsk = false;
        }
        return desktop.isManaged(window) && desktop.activeWindow() == window;
    });
    takeTurn();
    return isActive;
}

void WindowAccessScene::takeTurn() {
    brisk->connection().dispatchEvents();
    brisk->endTurn();
}

void WindowAccessScene::waitForRest(xcb_window_t window) {
    frameAtRest(desktop, client, window, std::chrono::milliseconds(100));
}

bool WindowAccessScene::allows(xcb_window_t window, const std::string& action) {
    const auto actions = desktop.cardinals(window, "_NET_WM_ALLOWED_ACTIONS");
    return std::find(actions.begin(), actions.end(), desktop.atom(action)) != actions.end();
}

AXUIElementRef WindowAccessScene::focusedElement() {
    takeTurn();
    const auto application = brisk->workspace().frontmostApplication();
    if (!application) {
        return nullptr;
    }
    WindowAccessibility windows(accessibility());
    return windows.focusedWindow(accessibility().AXUIElementCreateApplication(application->processIdentifier()))
        .value_or(nullptr);
}

std::optional<CGRect> WindowAccessScene::readFrame(const AXUIElementRef& element) {
    return WindowAccessibility(accessibility()).readFrame(element);
}

std::optional<CGRect> WindowAccessScene::frameOnceItIs(const CGRect& expected, const AXUIElementRef& element) {
    std::optional<CGRect> frame;
    static_cast<void>(waitUntil([&] {
        frame = readFrame(element);
        return !frame || frame == expected;
    }));
    return frame;
}

bool WindowAccessScene::writeFrame(const AXUIElementRef& element, const CGRect& frame) {
    return WindowAccessibility(accessibility()).writeFrame(element, frame);
}

AXError WindowAccessScene::role(const AXUIElementRef& element) {
    takeTurn();
    return accessibility().AXUIElementCopyAttributeValue(element, AXRole).error;
}

} // namespace brisk::desktop
