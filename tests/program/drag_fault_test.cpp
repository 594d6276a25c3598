#include "program/running_drag.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <string>
#include <sys/wait.h>
#include <utility>
#include <vector>

namespace brisk::desktop {
namespace {

/// What goes wrong in the middle of a drag. Afterwards the zones are gone, and the next hot key is answered.
class DragFault : public RunningDrag {
protected:
    void SetUp() override { startWithWindow(WindowManager::Kind::openbox); }

    void letGo() {
        pointer_.up();
        keyboard_.up(Key::leftShift);
    }
    void expectAllWellAgain() {
        EXPECT_TRUE(wait([&] { return !isOverlayShown(); }));
        expectAnswersTheNextHotKey();
        EXPECT_FALSE(isOverlayShown());
    }
    Process startCompositor() {
        Process compositor({"picom", "--backend", "xrender"}, server_.environment());
        EXPECT_TRUE(wait([&] { return desktop_.isCompositing(); })) << compositor.errors();
        return compositor;
    }
};

TEST_F(DragFault, TheWindowGoesAtAnyStep) {
    enum Step { pressed, moving, zonesShown, zoneChosen, released };
    for (const Step step : {pressed, moving, zonesShown, zoneChosen, released}) {
        SCOPED_TRACE(step);
        const xcb_window_t window = openWindow();
        putAt(window, startFrame);
        const auto goAt = [&](Step now) {
            if (now == step) {
                client_.close(window);
            }
            return step > now;
        };
        pointer_.moveTo(startFrame.x + startFrame.width / 2, startFrame.y + 8);
        pointer_.down();
        if (goAt(pressed)) {
            takeByTitle(window);
        }
        if (goAt(moving)) {
            pressShift();
        }
        if (goAt(zonesShown)) {
            dragTo(300, 400);
        }
        goAt(zoneChosen);
        letGo();
        goAt(released);
        expectAllWellAgain();
    }
}

TEST_F(DragFault, WhatComesUpGoesBelowTheZonesAtTheNextStep) {
    takeByTitle(window_);
    pressShift();
    // The last step of the drag has been dealt with, too.
    frameAtRest(window_);
    const xcb_window_t popup = client_.open({.client = {.width = 1440, .height = 900}, .overridesRedirect = true});
    ASSERT_TRUE(wait([&] { return desktop_.topmostWindow() == popup; }));
    pointer_.moveBy(1, 1);
    EXPECT_TRUE(wait([&] { return desktop_.topmostWindow() != popup; }));
    const auto own = programWindows();
    EXPECT_NE(std::ranges::find(own, desktop_.topmostWindow()), own.end());
    letGo();
    client_.close(popup);
    expectAllWellAgain();
}

TEST_F(DragFault, AWindowThatTakesAnotherSizeIsLetGoAtOnce) {
    takeByTitle(window_);
    pressShift();
    // The last step of the drag has been dealt with: from here on nothing moves.
    frameAtRest(window_);
    ASSERT_TRUE(isOverlayShown());
    const std::array<std::uint32_t, 2> size{startFrame.width + 50, startFrame.height + 50};
    xcb_configure_window(client_.connection().xcb(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size.data());
    client_.connection().synchronize();
    EXPECT_TRUE(wait([&] { return !isOverlayShown(); }));
    letGo();
    expectAllWellAgain();
}

TEST_F(DragFault, AFrozenWindowIsDroppedAllTheSame) {
    for (const bool isFrozenBefore : {true, false}) {
        SCOPED_TRACE(isFrozenBefore ? "frozen before the drag" : "frozen with the zones shown");
        Process application = startTestClient(server_.environment(), std::array{WindowDescription{}});
        const xcb_window_t window = testClientWindows(application, 1).front();
        ASSERT_TRUE(wait([&] { return desktop_.activeWindow() == window; }));
        putAt(window, startFrame);
        if (isFrozenBefore) {
            application.pause();
        }
        takeByTitle(window);
        pressShift();
        if (!isFrozenBefore) {
            application.pause();
        }
        dragTo(300, 400);
        letGo();
        EXPECT_TRUE(comesTo(window, leftHalf)) << *desktop_.visibleFrame(window);
        expectAllWellAgain();
    }
}

TEST_F(DragFault, TheWindowManagerGoesAndAnotherComes) {
    for (const WindowManagerFault& fault : windowManagerFaults) {
        SCOPED_TRACE(fault.why);
        const xcb_window_t window = openWindow();
        putAt(window, startFrame);
        takeByTitle(window);
        pressShift();
        fault.happensTo(*windowManager_);
        pointer_.moveBy(5, 5);
        letGo();
        EXPECT_TRUE(wait([&] { return !isOverlayShown(); }));
        windowManager_->recover();
        expectAllWellAgain();
        client_.close(window);
    }
}

TEST_F(DragFault, ACompositorComesAndGoes) {
    if (!isInstalled("picom")) {
        GTEST_SKIP() << "picom is not installed";
    }
    takeByTitle(window_);
    pressShift();
    for (int i = 0; i < 2; ++i) {
        Process compositor = startCompositor();
        pointer_.moveBy(5, 5);
        EXPECT_TRUE(wait([&] { return isOverlayShown(); }));
        compositor.stop();
        ASSERT_TRUE(wait([&] { return !desktop_.isCompositing(); }));
        pointer_.moveBy(5, 5);
        EXPECT_TRUE(wait([&] { return isOverlayShown(); }));
    }
    dragTo(300, 400);
    letGo();
    EXPECT_TRUE(comesTo(window_, leftHalf)) << *desktop_.visibleFrame(window_);
    expectAllWellAgain();
}

TEST_F(DragFault, MonitorsComeAndGoAndChange) {
    const PixelRect whole{.x = 0, .y = 0, .width = 1440, .height = 900};
    struct Row {
        const char* why;
        std::vector<VirtualMonitor> monitors;
        PixelRect underPointer;
    };
    // One drag over all of them.
    takeByTitle(window_);
    pressShift();
    PixelRect monitor = whole;
    for (const Row& row : {
             Row{"a second one",
                 {{.area = {.x = 0, .y = 0, .width = 720, .height = 900}, .isPrimary = true},
                  {.area = {.x = 720, .y = 0, .width = 720, .height = 900}}},
                 {.x = 720, .y = 0, .width = 720, .height = 900}},
             Row{"both change their size, and their parts",
                 {{.area = {.x = 0, .y = 0, .width = 700, .height = 800}},
                  {.area = {.x = 700, .y = 100, .width = 740, .height = 800}, .isPrimary = true}},
                 {.x = 700, .y = 100, .width = 740, .height = 800}},
             Row{"only the first is left, and the pointer is beyond it",
                 {{.area = {.x = 0, .y = 0, .width = 600, .height = 900}, .isPrimary = true}},
                 {.x = 0, .y = 0, .width = 600, .height = 900}},
             Row{"the second is back", {{.area = whole, .isPrimary = true}}, whole},
         }) {
        SCOPED_TRACE(row.why);
        pointer_.moveTo(1000, 500);
        server_.setMonitors(row.monitors);
        EXPECT_TRUE(wait([&] { return overlay().value_or(PixelRect{}) == row.underPointer; }))
            << overlay().value_or(PixelRect{});
        monitor = row.underPointer;
    }
    dragTo(monitor.x + 200, 400);
    letGo();
    EXPECT_TRUE(comesTo(window_, leftHalf)) << *desktop_.visibleFrame(window_);
    expectAllWellAgain();
}

TEST_F(DragFault, AMonitorGoesAtTheDrop) {
    server_.setMonitors({{.area = {.x = 0, .y = 0, .width = 720, .height = 900}, .isPrimary = true},
                         {.area = {.x = 720, .y = 0, .width = 720, .height = 900}}});
    takeByTitle(window_);
    pressShift();
    dragTo(900, 400);
    letGo();
    server_.setMonitors({{.area = {.x = 0, .y = 0, .width = 720, .height = 900}, .isPrimary = true}});
    server_.setMonitors({{.area = {.x = 0, .y = 0, .width = 1440, .height = 900}, .isPrimary = true}});
    expectAllWellAgain();
}

TEST_F(DragFault, TheKeyboardLayoutIsSwitched) {
    takeByTitle(window_);
    pressShift();
    for (const char* layout : {"de", "fr", "us"}) {
        Process switching({"setxkbmap", layout}, server_.environment());
        ASSERT_TRUE(wait([&] { return !switching.isRunning(); }));
        pointer_.moveBy(3, 3);
    }
    dragTo(300, 400);
    letGo();
    expectAllWellAgain();
    putAt(window_, startFrame);
    takeByTitle(window_);
    pressShift();
    dragTo(300, 400);
    letGo();
    EXPECT_TRUE(comesTo(window_, leftHalf)) << "the next drag, at " << *desktop_.visibleFrame(window_);
}

TEST_F(DragFault, TheServerDies) {
    takeByTitle(window_);
    pressShift();
    server_.process().stop();
    ASSERT_TRUE(waitUntil([&] { return !program_->isRunning(); }));
    EXPECT_TRUE(WIFEXITED(program_->waitStatus().value_or(-1))) << "no crash";
}

} // namespace
} // namespace brisk::desktop
