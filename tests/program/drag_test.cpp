#include "program/running_drag.h"

#include <string>

namespace brisk::desktop {
namespace {

using Kind = WindowManager::Kind;

class Drag : public RunningDrag, public testing::WithParamInterface<Kind> {
protected:
    void SetUp() override { startWithWindow(GetParam()); }
};

TEST_P(Drag, DropsOnTheZoneUnderThePointer) {
    struct Row {
        const char* why;
        int y;
    };
    for (const Row& row : {Row{"in the middle", 400}, Row{"where window managers themselves maximize or tile", 0}}) {
        SCOPED_TRACE(row.why);
        takeByTitle(window_);
        EXPECT_FALSE(isOverlayShown()) << "without Shift";
        pressShift();
        dragTo(300, row.y);
        pointer_.up();
        keyboard_.up(Key::leftShift);
        EXPECT_TRUE(wait([&] { return desktop_.visibleFrame(window_) == leftHalf; }))
            << "Shift let go just after the button, at " << *desktop_.visibleFrame(window_);
        EXPECT_EQ(frameAtRest(window_), leftHalf) << "the window manager has had its last word";
        EXPECT_FALSE(isOverlayShown());
        putAt(window_, startFrame);
    }
}

TEST_P(Drag, AResizeShowsNothing) {
    const PixelRect area = *desktop_.clientRect(window_);
    pointer_.moveTo(area.x + area.width - 5, area.y + area.height - 5);
    pointer_.down();
    // As windows with a resize grip of their own do.
    ASSERT_TRUE(wait([&] { return client_.record(window_).buttonPresses == 1; }));
    xcb_ungrab_pointer(client_.connection().xcb(), XCB_CURRENT_TIME);
    client_.connection().synchronize();
    constexpr std::uint32_t sizeBottomRight = 4;
    desktop_.sendToWindowManager(window_, "_NET_WM_MOVERESIZE",
                                 {static_cast<std::uint32_t>(area.x + area.width - 5),
                                  static_cast<std::uint32_t>(area.y + area.height - 5), sizeBottomRight, 1, 1});
    ASSERT_TRUE(wait([&] {
        pointer_.moveBy(1, 1);
        return desktop_.clientRect(window_)->width > area.width + 10;
    }));
    keyboard_.down(Key::leftShift);
    bool wasShown = false;
    for (int step = 0; step < 50; ++step) {
        pointer_.moveBy(1, 1);
        client_.dispatchEvents();
        wasShown = wasShown || isOverlayShown();
    }
    pointer_.up();
    keyboard_.up(Key::leftShift);
    const auto frame = frameAtRest(window_);
    EXPECT_FALSE(wasShown || isOverlayShown());
    EXPECT_GT(frame->width, startFrame.width + 10);
    EXPECT_EQ(frame->y, startFrame.y);
}

TEST_P(Drag, TakesTheWindowThatTheDragMakesActive) {
    const xcb_window_t other = openWindow();
    const PixelRect elsewhere{.x = 900, .y = 500, .width = 300, .height = 200};
    putAt(window_, {.x = 300, .y = 100, .width = 400, .height = 300});
    putAt(other, elsewhere);
    ASSERT_EQ(desktop_.activeWindow(), other);
    takeByTitle(window_);
    pressShift();
    dragTo(200, 500);
    pointer_.up();
    keyboard_.up(Key::leftShift);
    EXPECT_TRUE(wait([&] { return desktop_.visibleFrame(window_) == leftHalf; })) << *desktop_.visibleFrame(window_);
    EXPECT_EQ(frameAtRest(window_), leftHalf);
    EXPECT_EQ(desktop_.visibleFrame(other), elsewhere);
}

std::string programName(const testing::TestParamInfo<Kind>& info) {
    return WindowManager::programOf(info.param);
}

INSTANTIATE_TEST_SUITE_P(On, Drag, testing::ValuesIn(WindowManager::kindsToTest()), programName);

} // namespace
} // namespace brisk::desktop
