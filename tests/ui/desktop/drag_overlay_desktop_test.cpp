#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"
#include "platform/simulated/main_queue.h"
#include "platform/x11/desktop.h"
#include "ui/desktop/virtual_screen.h"
#include "ui/drag_overlay.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace brisk::desktop {
namespace {

constexpr std::uint32_t white = 0xF4F4F4;

/// In AppKit coordinates, whose origin is the primary monitor's bottom left corner.
constexpr ScreenInfo primary{.frame = {{0, 0}, {1000, 700}}, .visibleFrame = {{0, 0}, {1000, 700}}};
constexpr ScreenInfo left{.frame = {{-800, 200}, {800, 600}}, .visibleFrame = {{-800, 200}, {800, 600}}};

class DragOverlayOnScreen : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(desktop, nullptr);
        palette.setColor(QPalette::Highlight, QColor(0x20, 0x60, 0xE0));
        QApplication::setPalette(palette);
        overlay.emplace(desktop->nativeWindows());
    }

    /// Lets the toolkit and the platform go on until the condition holds.
    bool reaches(const std::function<bool()>& condition) {
        return waitUntil([&] {
            QCoreApplication::processEvents();
            desktop->connection().dispatchEvents();
            desktop->endTurn();
            client.dispatchEvents();
            return condition();
        });
    }

    xcb_window_t overlayWindow() {
        for (const QWidget* widget : QApplication::topLevelWidgets()) {
            if (const auto* view = dynamic_cast<const WindowDragOverlayView*>(widget)) {
                return static_cast<xcb_window_t>(view->winId());
            }
        }
        return XCB_WINDOW_NONE;
    }

    /// What the user sees at that point of the root window: 0xRRGGBB.
    std::uint32_t pixel(int x, int y) {
        const Reply<xcb_get_image_reply_t> reply{
            xcb_get_image_reply(screen.xcb(),
                                xcb_get_image(screen.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root(),
                                              static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U),
                                nullptr)};
        if (!reply || xcb_get_image_data_length(reply.get()) < 4) {
            return 0;
        }
        const std::uint8_t* bytes = xcb_get_image_data(reply.get());
        return static_cast<std::uint32_t>(bytes[2] << 16 | bytes[1] << 8 | bytes[0]);
    }

    xcb_window_t openWindow(const PixelRect& area, bool isFullscreen = false) {
        const xcb_window_t window = client.open({.client = area, .isFullscreen = isFullscreen, .background = white});
        EXPECT_TRUE(reaches([&] {
            return screen.isManaged(window) && screen.activeWindow() == window &&
                   (!isFullscreen || screen.clientRect(window)->width >= primaryMonitor.width);
        }));
        return window;
    }

    simulated::MainQueue mainQueue;
    std::unique_ptr<x11::Desktop> desktop = x11::Desktop::open(
        mainQueue, [] {}, virtualScreen().display().c_str());
    DesktopConnection screen{virtualScreen().display()};
    WindowManager windowManager{virtualScreen(), WindowManager::Kind::openbox};
    TestClient client{virtualScreen().display()};
    QPalette palette;
    std::optional<WindowDragOverlayController> overlay;
    const std::uint32_t accent = 0x2060E0;
};

TEST_F(DragOverlayOnScreen, CoversEachDisplayExactlyWithZonesInItsOwnPixels) {
    openWindow({.x = 20, .y = 30, .width = 700, .height = 500});
    struct Row {
        const char* why;
        const ScreenInfo& display;
        PixelRect expected;
    };
    for (const Row& row : {
             Row{"the primary display", primary, primaryMonitor},
             Row{"the one left of it", left, leftMonitor},
             Row{"and back, while shown", primary, primaryMonitor},
         }) {
        SCOPED_TRACE(row.why);
        CGRect frame{.origin = row.display.frame.origin, .size = {.width = 301, .height = 200}};
        frame.origin.x += 101;
        frame.origin.y += 77;
        overlay->show({{WindowLayout::leftHalf, frame}}, "window.leftHalf", row.display);
        EXPECT_TRUE(reaches([&] { return screen.clientRect(overlayWindow()) == row.expected; }))
            << *screen.clientRect(overlayWindow());
        // The zone's left and right lines, and just beside them; clear of the label, which may be wider than the zone.
        const int x = row.expected.x + 101;
        const int y = row.expected.y + row.expected.height - 77 - 40;
        EXPECT_TRUE(reaches([&] { return pixel(x, y) == accent; }));
        EXPECT_NE(pixel(x - 1, y), accent);
        EXPECT_EQ(pixel(x + 300, y), accent);
        EXPECT_NE(pixel(x + 301, y), accent);
        EXPECT_EQ(pixel(x + 30, row.expected.y + row.expected.height - 77 - 1), accent) << "its lower line";
        EXPECT_NE(pixel(x + 30, row.expected.y + row.expected.height - 77), accent);
    }
    overlay->hide();
    EXPECT_TRUE(reaches([&] { return !screen.isViewable(overlayWindow()); }));
}

TEST_F(DragOverlayOnScreen, LetsClicksThroughAndLeavesTheFocusAlone) {
    const xcb_window_t window = openWindow({.x = 900, .y = 200, .width = 600, .height = 500});
    const PixelRect client_ = *screen.clientRect(window);
    // Its label lies in the middle of the window.
    const CGRect zone{.origin = {.x = client_.x - 800.0 + 20, .y = 800.0 - client_.y - client_.height + 20},
                      .size = {.width = client_.width - 40.0, .height = client_.height - 40.0}};
    overlay->show({{WindowLayout::leftHalf, zone}}, "window.leftHalf", primary);
    const int x = client_.x + client_.width / 2;
    const int y = client_.y + client_.height / 2;
    ASSERT_TRUE(reaches([&] { return pixel(x, y - 10) != white && pixel(client_.x + 20, y) == accent; }));

    Pointer pointer(screen);
    int presses = 0;
    for (const int clickX : {x, client_.x + 21, client_.x + 100}) {
        pointer.moveTo(clickX, y);
        pointer.down();
        pointer.up();
        ++presses;
        EXPECT_TRUE(reaches([&] { return client.record(window).buttonPresses == presses; })) << clickX;
    }
    EXPECT_EQ(screen.activeWindow(), window);
    Keyboard(screen).press(Key::c);
    EXPECT_TRUE(reaches([&] { return client.record(window).pressedKeys.size() == 1; }));
}

TEST_F(DragOverlayOnScreen, LiesAboveAWindowInFullScreen) {
    openWindow(primaryMonitor, true);
    overlay->show({{WindowLayout::leftHalf, {{100, 100}, {300, 300}}}}, "window.leftHalf", primary);
    EXPECT_TRUE(reaches([&] { return pixel(primaryMonitor.x + 100, 600) == accent; }));
}

TEST_F(DragOverlayOnScreen, FollowsACompositorThatComesAndGoes) {
    if (!isInstalled("picom")) {
        GTEST_SKIP() << "picom is not installed";
    }
    openWindow(primaryMonitor, true);
    const CGRect zone{.origin = {100, 100}, .size = {600, 400}};
    overlay->show({{WindowLayout::leftHalf, zone}}, "window.leftHalf", primary);
    const auto inside = [&] { return pixel(primaryMonitor.x + 160, 600); };
    const auto line = [&] { return pixel(primaryMonitor.x + 100, 500); };
    const auto beside = [&] { return pixel(primaryMonitor.x + 50, 600); };
    // Without: nothing but outline and label covers what is below.
    ASSERT_TRUE(reaches([&] { return line() == accent; }));
    EXPECT_EQ(inside(), white);
    EXPECT_EQ(beside(), white);
    {
        Process compositor({"picom", "--backend", "xrender", "--config", "/dev/null"}, virtualScreen().environment());
        // With: the fill lets a third of the accent through to the white below.
        EXPECT_TRUE(reaches([&] {
            const std::uint32_t seen = inside();
            return std::abs(static_cast<int>(seen >> 16U & 0xFFU) - (0xF4 * 66 + 0x20 * 34) / 100) <= 3 &&
                   std::abs(static_cast<int>(seen & 0xFFU) - (0xF4 * 66 + 0xE0 * 34) / 100) <= 3;
        })) << std::hex
            << inside();
        EXPECT_EQ(beside(), white);
        EXPECT_EQ(screen.clientRect(overlayWindow()), primaryMonitor);
    }
    EXPECT_TRUE(reaches([&] { return inside() == white && line() == accent; })) << "outlines again, after it went";
}

} // namespace
} // namespace brisk::desktop
