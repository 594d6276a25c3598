#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <span>

namespace brisk::desktop {
namespace {

using Kind = WindowManager::Kind;

constexpr PixelSize screenSize{.width = 1440, .height = 900};
constexpr PixelRect leftHalf{.x = 0, .y = 0, .width = 720, .height = 900};
constexpr PixelRect start{.x = 500, .y = 300, .width = 400, .height = 300};

/// The product itself on a desktop, and a person at the mouse.
class Drag : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override {
        server.home().write("data/brisk/native-settings.json", R"({
            "hasCompletedOnboarding": true,
            "dragEnabledBuiltInWindowLayoutIDs": ["window.leftHalf", "window.rightHalf"] })");
        windowManager = std::make_unique<WindowManager>(server, GetParam());
        brisk = std::make_unique<Process>(std::vector<std::string>{BRISK_PROGRAM_PATH}, server.environment(), SIGTERM);
        ASSERT_TRUE(wait([&] { return isGrabbed(desktop, Key::left, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1); }))
            << brisk->errors();
        window = open({});
        // A hot key that works tells that the program has started to the end.
        keyboard.press(Key::left, {Key::leftControl, Key::leftAlt});
        ASSERT_TRUE(wait([&] { return desktop.visibleFrame(window) == leftHalf; }));
        putAt(window, start);
    }

    bool wait(const std::function<bool()>& condition) {
        return waitUntil([&] {
            client.dispatchEvents();
            return condition();
        });
    }
    xcb_window_t open(const WindowDescription& description) {
        const xcb_window_t opened = client.open(description);
        EXPECT_TRUE(wait([&] {
            if (desktop.isManaged(opened) && desktop.activeWindow() != opened) {
                desktop.requestActivation(opened);
            }
            return desktop.isManaged(opened) && desktop.activeWindow() == opened;
        }));
        return opened;
    }
    void putAt(xcb_window_t moved, const PixelRect& frame) {
        frameAtRest(moved);
        desktop.requestFrame(moved, frame);
        ASSERT_TRUE(wait([&] { return desktop.visibleFrame(moved) == frame; }));
    }
    /// Where the window is once nobody has moved it for a while: there is no event that says that nothing more comes.
    std::optional<PixelRect> frameAtRest(xcb_window_t resting) {
        auto last = desktop.visibleFrame(resting);
        auto since = std::chrono::steady_clock::now();
        EXPECT_TRUE(wait([&] {
            if (const auto now = desktop.visibleFrame(resting); now != last) {
                last = now;
                since = std::chrono::steady_clock::now();
            }
            return std::chrono::steady_clock::now() - since > std::chrono::milliseconds(250);
        }));
        return last;
    }

    /// Takes the window by its title bar and moves it a little, until it follows.
    void takeByTitle(xcb_window_t taken) {
        const auto before = desktop.visibleFrame(taken);
        ASSERT_TRUE(before);
        pointer.moveTo(before->x + before->width / 2, before->y + 8);
        pointer.down();
        ASSERT_TRUE(wait([&] {
            pointer.moveBy(1, 1);
            return desktop.visibleFrame(taken)->x > before->x + 10;
        })) << "the window manager does not move the window";
    }
    /// Presses Shift and drags on until the zones are there.
    void pressShift() {
        keyboard.down(Key::leftShift);
        // Far to and fro: with Shift some window managers let a window only jump from edge to edge, and a product that
        // is late sees nothing of the way before.
        int step = 0;
        ASSERT_TRUE(wait([&] {
            constexpr int stepsOneWay = 20;
            const int distance = step++ / stepsOneWay % 2 == 0 ? 10 : -10;
            pointer.moveBy(distance, distance);
            return isOverlayShown();
        }));
    }
    void dragTo(int x, int y) {
        constexpr int stepCount = 20;
        for (int step = 0; step < stepCount; ++step) {
            pointer.moveTo(x + stepCount - step, y + stepCount - step);
        }
        pointer.moveTo(x, y);
    }
    /// The product's window over the whole display, as long as it is on the screen.
    bool isOverlayShown() {
        const Reply<xcb_query_tree_reply_t> tree{
            xcb_query_tree_reply(desktop.xcb(), xcb_query_tree(desktop.xcb(), desktop.root()), nullptr)};
        const std::span children(xcb_query_tree_children(tree.get()),
                                 static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
        return std::ranges::any_of(children, [&](xcb_window_t child) {
            const PixelRect whole{.x = 0, .y = 0, .width = screenSize.width, .height = screenSize.height};
            const auto owner = desktop.cardinals(child, "_NET_WM_PID");
            return owner.size() == 1 && owner.front() == static_cast<std::uint32_t>(brisk->id()) &&
                   desktop.isViewable(child) && desktop.clientRect(child) == whole;
        });
    }

    VirtualServer server{screenSize};
    std::unique_ptr<WindowManager> windowManager;
    DesktopConnection desktop{server.display()};
    Keyboard keyboard{desktop};
    Pointer pointer{desktop};
    TestClient client{server.display()};
    std::unique_ptr<Process> brisk;
    xcb_window_t window = XCB_WINDOW_NONE;
};

TEST_P(Drag, DropsOnTheZoneUnderThePointer) {
    struct Row {
        const char* why;
        int y;
    };
    for (const Row& row : {Row{"in the middle", 400}, Row{"where window managers themselves maximize or tile", 0}}) {
        SCOPED_TRACE(row.why);
        takeByTitle(window);
        EXPECT_FALSE(isOverlayShown()) << "without Shift";
        pressShift();
        dragTo(300, row.y);
        pointer.up();
        keyboard.up(Key::leftShift);
        EXPECT_TRUE(wait([&] { return desktop.visibleFrame(window) == leftHalf; }))
            << "Shift let go just after the button, at " << *desktop.visibleFrame(window);
        EXPECT_EQ(frameAtRest(window), leftHalf) << "the window manager has had its last word";
        EXPECT_FALSE(isOverlayShown());
        putAt(window, start);
    }
}

TEST_P(Drag, ReleasedWithoutShiftIsAnOrdinaryDrag) {
    takeByTitle(window);
    pressShift();
    dragTo(300, 400);
    keyboard.up(Key::leftShift);
    pointer.up();
    EXPECT_TRUE(wait([&] { return !isOverlayShown(); }));
    const auto frame = frameAtRest(window);
    EXPECT_EQ(frame->width, start.width);
    EXPECT_EQ(frame->height, start.height);
    EXPECT_FALSE(isOverlayShown());
}

TEST_P(Drag, AResizeShowsNothing) {
    const PixelRect area = *desktop.clientRect(window);
    pointer.moveTo(area.x + area.width - 5, area.y + area.height - 5);
    pointer.down();
    // As windows with a resize grip of their own do.
    ASSERT_TRUE(wait([&] { return client.record(window).buttonPresses == 1; }));
    xcb_ungrab_pointer(client.connection().xcb(), XCB_CURRENT_TIME);
    client.connection().synchronize();
    constexpr std::uint32_t sizeBottomRight = 4;
    desktop.sendToWindowManager(window, "_NET_WM_MOVERESIZE",
                                {static_cast<std::uint32_t>(area.x + area.width - 5),
                                 static_cast<std::uint32_t>(area.y + area.height - 5), sizeBottomRight, 1, 1});
    ASSERT_TRUE(wait([&] {
        pointer.moveBy(1, 1);
        return desktop.clientRect(window)->width > area.width + 10;
    }));
    keyboard.down(Key::leftShift);
    bool wasShown = false;
    for (int step = 0; step < 50; ++step) {
        pointer.moveBy(1, 1);
        client.dispatchEvents();
        wasShown = wasShown || isOverlayShown();
    }
    pointer.up();
    keyboard.up(Key::leftShift);
    const auto frame = frameAtRest(window);
    EXPECT_FALSE(wasShown || isOverlayShown());
    EXPECT_GT(frame->width, start.width + 10);
    EXPECT_EQ(frame->y, start.y);
}

TEST_P(Drag, AWindowThatClosesTakesTheZonesAway) {
    takeByTitle(window);
    pressShift();
    client.close(window);
    EXPECT_TRUE(wait([&] { return !isOverlayShown(); }));
    pointer.up();
    keyboard.up(Key::leftShift);
}

TEST_P(Drag, TakesTheWindowThatTheDragMakesActive) {
    const xcb_window_t other = open({});
    const PixelRect elsewhere{.x = 900, .y = 500, .width = 300, .height = 200};
    putAt(window, {.x = 300, .y = 100, .width = 400, .height = 300});
    putAt(other, elsewhere);
    ASSERT_EQ(desktop.activeWindow(), other);
    takeByTitle(window);
    pressShift();
    dragTo(200, 500);
    pointer.up();
    keyboard.up(Key::leftShift);
    EXPECT_TRUE(wait([&] { return desktop.visibleFrame(window) == leftHalf; })) << *desktop.visibleFrame(window);
    EXPECT_EQ(frameAtRest(window), leftHalf);
    EXPECT_EQ(desktop.visibleFrame(other), elsewhere);
}

std::string programName(const testing::TestParamInfo<Kind>& info) {
    return WindowManager::programOf(info.param);
}

INSTANTIATE_TEST_SUITE_P(On, Drag, testing::ValuesIn(WindowManager::kindsToTest()), programName);

} // namespace
} // namespace brisk::desktop
