#include "program/running_drag.h"

#include <chrono>

namespace brisk::desktop {

void RunningDrag::startWithWindow(WindowManager::Kind kind) {
    settings_ = R"({
        "hasCompletedOnboarding": true,
        "dragEnabledBuiltInWindowLayoutIDs": ["window.leftHalf", "window.rightHalf"] })";
    startWindowManager(kind);
    start();
    window_ = openWindow();
    // A hot key that works tells that the program has started to the end.
    press(Key::left);
    ASSERT_TRUE(comesTo(window_, leftHalf));
    putAt(window_, startFrame);
}

bool RunningDrag::wait(const std::function<bool()>& condition) {
    return waitUntil([&] {
        client_.dispatchEvents();
        return condition();
    });
}

void RunningDrag::putAt(xcb_window_t window, const PixelRect& frame) {
    frameAtRest(window);
    desktop_.requestFrame(window, frame);
    ASSERT_TRUE(comesTo(window, frame));
}

std::optional<PixelRect> RunningDrag::frameAtRest(xcb_window_t window) {
    return desktop::frameAtRest(desktop_, client_, window, std::chrono::milliseconds(250));
}

void RunningDrag::takeByTitle(xcb_window_t window) {
    ASSERT_TRUE(pointer_.takeByTitle(window, [this] { client_.dispatchEvents(); }))
        << "the window manager does not move the window";
}

void RunningDrag::pressShift() {
    keyboard_.down(Key::leftShift);
    // Far to and fro: with Shift some window managers let a window only jump from edge to edge, and a program that is
    // late sees nothing of the way before.
    int step = 0;
    ASSERT_TRUE(wait([&] {
        constexpr int stepsOneWay = 20;
        const int distance = step++ / stepsOneWay % 2 == 0 ? 10 : -10;
        pointer_.moveBy(distance, distance);
        return isOverlayShown();
    })) << "no zones; "
        << programWindows().size() << " windows of the program's can be seen" << program_->output();
}

void RunningDrag::dragTo(int x, int y) {
    constexpr int stepCount = 20;
    for (int step = 0; step < stepCount; ++step) {
        pointer_.moveTo(x + stepCount - step, y + stepCount - step);
    }
    pointer_.moveTo(x, y);
}

std::optional<PixelRect> RunningDrag::overlay() {
    for (const xcb_window_t window : programWindows()) {
        // The only one that reaches over the height of a display.
        if (const auto rect = desktop_.clientRect(window); rect && rect->height >= 450) {
            return rect;
        }
    }
    return std::nullopt;
}

} // namespace brisk::desktop
