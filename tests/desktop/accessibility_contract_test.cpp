#include "platform/accessibility_contract.h"

#include "desktop/window_access_scene.h"

#include <algorithm>
#include <list>
#include <map>
#include <optional>
#include <stdexcept>

namespace brisk::desktop {
namespace {

/// Real applications under openbox.
class X11DesktopUnderTest final : public DesktopUnderTest {
public:
    AccessibilityPlatform& accessibility() override { return scene_.accessibility(); }
    Workspace& workspace() override { return scene_.brisk->workspace(); }

    LaunchedApplication launchInFront(const std::vector<WindowRequest>& windows) override {
        std::vector<WindowDescription> descriptions;
        descriptions.reserve(windows.size());
        for (const WindowRequest& request : windows) {
            descriptions.push_back(describe(request));
        }
        Process& process = processes_.emplace_back(startTestClient(scene_.server.environment(), descriptions));
        LaunchedApplication launched{.processIdentifier = process.id(), .windows = {}};
        for (const xcb_window_t window : testClientWindows(process, windows.size())) {
            require(scene_.waitInFront(window, WindowAccessScene::Activation::requested));
            const PixelRect frame = toPixels(windows[launched.windows.size()].frame);
            scene_.desktop.requestFrame(window, frame);
            require(waitUntil([&] { return scene_.desktop.visibleFrame(window) == frame; }));
            launched.windows.push_back(window);
        }
        // The active window is told after the focus has moved: what was asked for an earlier one may have come in late.
        require(scene_.waitInFront(static_cast<xcb_window_t>(launched.windows.back()),
                                   WindowAccessScene::Activation::requested));
        scene_.takeTurn();
        return launched;
    }

    void closeWindow(const LaunchedApplication&, WindowToken window) override {
        xcb_destroy_window(scene_.desktop.xcb(), static_cast<xcb_window_t>(window));
        settle();
    }

    void quit(const LaunchedApplication& application) override {
        processes_.remove_if([&](const Process& process) { return process.id() == application.processIdentifier; });
        // The server hears of it when it reads the closed connection, in its own time.
        require(waitUntil([&] {
            settle();
            return !scene_.desktop.isManaged(static_cast<xcb_window_t>(application.windows.front()));
        }));
        settle();
    }

    void setDisplays(const std::vector<CGRect>& frames) override {
        // AppKit's vertical axis is turned over; the highest edge is the screen's top.
        double left = 0;
        double top = 0;
        for (const CGRect& frame : frames) {
            left = std::min(left, frame.minX());
            top = std::max(top, frame.maxY());
        }
        std::vector<VirtualMonitor> monitors;
        for (const CGRect& frame : frames) {
            const CGRect inRoot{{frame.minX() - left, top - frame.maxY()}, frame.size};
            monitors.push_back({.area = toPixels(inRoot), .isPrimary = monitors.empty()});
        }
        scene_.server.setMonitors(monitors);
        primaryOrigin_ = toCGRect(monitors.front().area).origin;
        settle();
    }

private:
    static void require(bool condition) {
        if (!condition) {
            throw std::runtime_error("the desktop did not do as it was told");
        }
    }

    void settle() {
        scene_.desktop.synchronize();
        scene_.takeTurn();
    }

    /// From accessibility or, before displays are set, root coordinates.
    PixelRect toPixels(const CGRect& frame) const {
        return {.x = static_cast<int>(frame.minX() + primaryOrigin_.x),
                .y = static_cast<int>(frame.minY() + primaryOrigin_.y),
                .width = static_cast<int>(frame.width()),
                .height = static_cast<int>(frame.height())};
    }

    WindowDescription describe(const WindowRequest& request) {
        // Decorations come on top of a client's area.
        const PixelExtents around = decorations(request.isResizable);
        const auto toClient = [&](const CGSize& size) {
            return PixelSize{.width = std::max(static_cast<int>(size.width) - around.left - around.right, 1),
                             .height = std::max(static_cast<int>(size.height) - around.top - around.bottom, 1)};
        };
        const PixelSize size = toClient(request.frame.size);
        WindowDescription description{.client = {.x = 10, .y = 40, .width = size.width, .height = size.height},
                                      .minimumSize = toClient(request.minimumSize)};
        if (!request.isResizable) {
            description.minimumSize = size;
            description.maximumSize = size;
        }
        return description;
    }

    /// A window that cannot be resized has no handle to do so.
    PixelExtents decorations(bool isResizable) {
        auto& known = decorations_[isResizable];
        if (!known) {
            const PixelSize size{.width = 400, .height = 300};
            WindowDescription description;
            description.minimumSize = size;
            if (!isResizable) {
                description.maximumSize = size;
            }
            const xcb_window_t sample = scene_.openInFront(description);
            known = scene_.desktop.decorations(sample);
            scene_.client.close(sample);
            settle();
        }
        return *known;
    }

    WindowAccessScene scene_{WindowManager::Kind::openbox, {.width = 1600, .height = 900}};
    std::list<Process> processes_;
    CGPoint primaryOrigin_;
    std::map<bool, std::optional<PixelExtents>> decorations_;
};

} // namespace
} // namespace brisk::desktop

namespace brisk {
INSTANTIATE_TEST_SUITE_P(X11, AccessibilityContract,
                         ::testing::Values([] { return std::make_unique<desktop::X11DesktopUnderTest>(); }));
} // namespace brisk
