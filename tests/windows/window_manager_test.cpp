#include "windows/window_manager.h"

#include "platform/simulated/desktop.h"
#include "support/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace brisk {
namespace {

using testing::ElementsAre;

class WindowManagerTest : public testing::Test {
protected:
    using enum WindowActionResult;

    // The display is 1440 × 900 with a menu bar of 25 points at its top: in accessibility coordinates the usable area
    // begins at y 25.
    static constexpr CGRect start{.origin = {100, 100}, .size = {640, 480}};
    static constexpr CGRect leftHalf{.origin = {0, 25}, .size = {720, 875}};
    static constexpr CGRect whole{.origin = {0, 25}, .size = {1440, 875}};

    simulated::Desktop desktop;
    simulated::ApplicationRef application = desktop.launchInFront("Editor", start);
    simulated::WindowRef window = application->windows.front();
    WindowManager manager{desktop.accessibility};

    WindowActionResult apply(WindowLayout layout, double gap = 0) {
        return manager.applyLayout(layout, *application, gap);
    }
    std::optional<CGRect> remembered() {
        const auto& records = manager.restoreHistory().records();
        const auto found = records.find({simulated::Accessibility::elementOf(window)});
        return found == records.end() ? std::nullopt : std::optional(found->second.originalFrame);
    }
};

TEST_F(WindowManagerTest, PlacesTheFocusedWindowAndRestoresWhereItWasBeforeTheFirstLayout) {
    EXPECT_EQ(apply(WindowLayout::leftHalf), applied);
    EXPECT_EQ(window->frame, leftHalf);
    EXPECT_EQ(apply(WindowLayout::maximize, 10), applied);
    EXPECT_EQ(window->frame, (CGRect{{10, 35}, {1420, 855}}));
    EXPECT_EQ(manager.applyCustomLayout({.id = "A", .name = "A", .selection = {4, 4, 3, 0, 1, 4}}, *application, 0),
              applied);
    EXPECT_EQ(window->frame, (CGRect{{1080, 25}, {360, 875}}));

    EXPECT_EQ(apply(WindowLayout::restore), applied);
    EXPECT_EQ(window->frame, start);
    EXPECT_EQ(apply(WindowLayout::restore), nothingToRestore);
}

TEST_F(WindowManagerTest, CallsThePlatformInAFixedOrder) {
    apply(WindowLayout::leftHalf);
    desktop.log.clear();
    apply(WindowLayout::maximize);
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("AXUIElementCreateApplication 101", "AXUIElementCopyAttributeValue AXFocusedWindow",
                            "AXUIElementCopyAttributeValue AXPosition", "AXUIElementCopyAttributeValue AXSize",
                            "AXUIElementCopyAttributeValue AXRole", "screens",
                            "AXUIElementSetAttributeValue AXPosition", "AXUIElementSetAttributeValue AXSize",
                            "AXUIElementCopyAttributeValue AXPosition", "AXUIElementCopyAttributeValue AXSize"));
    desktop.log.clear();
    apply(WindowLayout::restore);
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("AXUIElementCreateApplication 101", "AXUIElementCopyAttributeValue AXFocusedWindow",
                            "AXUIElementCopyAttributeValue AXPosition", "AXUIElementCopyAttributeValue AXSize",
                            "AXUIElementCopyAttributeValue AXRole", "AXUIElementSetAttributeValue AXPosition",
                            "AXUIElementSetAttributeValue AXSize"));
}

TEST_F(WindowManagerTest, AWindowTheUserMovedSinceStartsANewRun) {
    apply(WindowLayout::leftHalf);
    window->frame.origin.x += 1.5;
    EXPECT_EQ(apply(WindowLayout::restore), applied) << "a point and a half is the same place";
    EXPECT_EQ(window->frame, start);

    apply(WindowLayout::leftHalf);
    window->frame.origin.x += 50;
    const CGRect dragged = window->frame;
    EXPECT_EQ(apply(WindowLayout::maximize), applied);
    EXPECT_EQ(remembered(), dragged);
    EXPECT_EQ(apply(WindowLayout::restore), applied);
    EXPECT_EQ(window->frame, dragged);

    apply(WindowLayout::maximize);
    window->frame.origin.x += 50;
    const CGRect draggedAgain = window->frame;
    EXPECT_EQ(apply(WindowLayout::restore), nothingToRestore);
    EXPECT_EQ(window->frame, draggedAgain);
    EXPECT_EQ(remembered(), std::nullopt);
}

TEST_F(WindowManagerTest, RemembersTheFrameThatTheWindowReallyTook) {
    window->minimumSize = {.width = 900, .height = 200};
    window->increment = {.width = 7, .height = 13};
    EXPECT_EQ(apply(WindowLayout::leftHalf), applied);
    EXPECT_EQ(window->frame.width(), 900);
    EXPECT_EQ(apply(WindowLayout::restore), applied) << "recognised at its own size";
    EXPECT_EQ(window->frame.origin, start.origin);
}

TEST_F(WindowManagerTest, RefusalsLeaveTheHistoryAsItWas) {
    window->positionWriteError = kAXErrorCannotComplete;
    EXPECT_EQ(apply(WindowLayout::leftHalf), failed);
    EXPECT_EQ(remembered(), std::nullopt);
    window->positionWriteError = kAXErrorSuccess;
    window->frame = start;
    apply(WindowLayout::leftHalf);

    window->sizeWriteError = kAXErrorCannotComplete;
    EXPECT_EQ(apply(WindowLayout::maximize), failed);
    EXPECT_EQ(remembered(), start);
    EXPECT_EQ(apply(WindowLayout::restore), failed);
    EXPECT_EQ(remembered(), start) << "a restore that failed can be tried again";

    window->frame.origin.x = 400;
    EXPECT_EQ(apply(WindowLayout::maximize), failed);
    EXPECT_EQ(remembered(), std::nullopt) << "a stale record goes even so";
}

TEST_F(WindowManagerTest, ForgetsClosedWindowsAtTheNextCommandForAnyApplication) {
    apply(WindowLayout::leftHalf);
    window->exists = false;
    EXPECT_EQ(apply(WindowLayout::leftHalf), noWindow);
    EXPECT_EQ(apply(WindowLayout::restore), noWindow);
    EXPECT_EQ(manager.restoreHistory().records().size(), 1U) << "not pruned without a window to work on";

    const auto other = desktop.launchInFront("Terminal", start);
    EXPECT_EQ(manager.applyLayout(WindowLayout::restore, *other, 0), nothingToRestore);
    EXPECT_TRUE(manager.restoreHistory().records().empty());
}

TEST_F(WindowManagerTest, UsesTheDisplayThatHoldsTheWindow) {
    desktop.accessibility.displays.push_back(
        {.frame = {{1440, -100}, {1000, 1000}}, .visibleFrame = {{1440, -60}, {1000, 960}}});
    window->frame = {{1500, 100}, {640, 480}};
    EXPECT_EQ(manager.focusedWindowFrame(*application), (CGRect{{1500, 320}, {640, 480}}));
    EXPECT_EQ(apply(WindowLayout::bottomRight), applied);
    EXPECT_EQ(window->frame, (CGRect{{1940, 480}, {500, 480}}));

    desktop.accessibility.displays.pop_back();
    EXPECT_EQ(apply(WindowLayout::restore), applied) << "though the display that held it is gone";
    EXPECT_EQ(window->frame, (CGRect{{1500, 100}, {640, 480}}));

    desktop.accessibility.displays.clear();
    EXPECT_EQ(apply(WindowLayout::maximize), failed);
    EXPECT_EQ(manager.focusedWindowFrame(*application), std::nullopt);
}

// A window may go between any two calls: whatever the step, the command ends with a result and the next one works.
TEST_F(WindowManagerTest, SurvivesTheWindowVanishingAtEveryStep) {
    for (const WindowLayout layout : {WindowLayout::leftHalf, WindowLayout::restore}) {
        bool vanishedInTime = true;
        for (std::size_t step = 1; vanishedInTime; ++step) {
            SCOPED_TRACE(step);
            simulated::Desktop fresh;
            const auto app = fresh.launchInFront("Editor", start);
            const auto victim = app->windows.front();
            const auto survivor = simulated::Desktop::openWindow(app, {{300, 300}, {300, 300}});
            std::swap(app->windows.front(), app->windows.back());
            WindowManager windowManager{fresh.accessibility};
            ASSERT_EQ(windowManager.applyLayout(WindowLayout::maximize, *app, 0), applied);
            ASSERT_EQ(victim->frame, whole);

            fresh.log.clear();
            fresh.log.onCall = [&](const std::string&) { victim->exists = fresh.log.calls().size() < step; };
            const WindowActionResult result = windowManager.applyLayout(layout, *app, 0);
            fresh.log.onCall = nullptr;
            vanishedInTime = !victim->exists;
            victim->exists = false;

            if (vanishedInTime) {
                EXPECT_TRUE(result == applied || result == failed || result == noWindow || result == nothingToRestore);
                EXPECT_EQ(windowManager.applyLayout(WindowLayout::topLeft, *app, 0), applied);
                EXPECT_EQ(survivor->frame, (CGRect{{0, 25}, {720, 437.5}}));
                EXPECT_LE(windowManager.restoreHistory().records().size(), 1U) << "nothing of the dead window is kept";
            } else {
                EXPECT_EQ(result, applied);
                EXPECT_GT(step, 5U) << "every step of the command was tried";
            }
        }
    }
}

} // namespace
} // namespace brisk
