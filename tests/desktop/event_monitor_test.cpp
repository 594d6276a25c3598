#include "desktop/event_loop.h"
#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"
#include "platform/x11/desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <array>
#include <list>
#include <ostream>
#include <utility>

namespace brisk::desktop {
namespace {

using std::chrono::milliseconds;
using enum NSEventType;

constexpr NSEventMask allEvents = maskOf(leftMouseDown) | maskOf(leftMouseUp) | maskOf(leftMouseDragged);

struct Report {
    NSEventType type;
    bool isShiftHeld = false;
    friend bool operator==(const Report&, const Report&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Report& report) {
        return stream << (report.type == leftMouseDown ? "down"
                          : report.type == leftMouseUp ? "up"
                                                       : "dragged")
                      << (report.isShiftHeld ? " with Shift" : "");
    }
};
using Reports = std::vector<Report>;

/// A desktop with a window manager, and the monitor watching it from this process.
class EventMonitorTest : public testing::Test {
protected:
    EventMonitorTest() {
        for (const auto& input : brisk->inputs()) {
            loop.watch(input.fileDescriptor, input.read);
        }
        loop.setEndOfTurn([this] { brisk->endTurn(); });
        watch();
        pointer.moveTo(5, 890);
        // The first key of another keyboard brings that one's map along.
        keyboard.press(Key::leftShift);
    }

    void watch() {
        token = monitor.addGlobalMonitorForEventsMatchingMask(
            allEvents, [this](NSEventType type, NSEventModifierFlags flags) {
                reports.push_back({.type = type, .isShiftHeld = (flags & NSEventModifierFlagShift) != 0});
                EXPECT_FALSE(std::exchange(isWorkDue, true)) << "who is told has a turn before the next report";
                loop.async([this] {
                    isWorkDue = false;
                    if (ignoredRegion) {
                        monitor.ignoreMotionWithin(*ignoredRegion);
                    }
                });
                if (type == leftMouseDown) {
                    activeAtPress = desktop.activeWindow();
                }
            });
        ASSERT_TRUE(token);
        // A round trip: from here on the server tells of presses.
        monitor.mouseLocation();
    }

    /// A window of another process, active once this returns.
    xcb_window_t openElsewhere(const WindowDescription& description) {
        processes.push_back(startTestClient(server.environment(), std::array{description}));
        const xcb_window_t window = testClientWindows(processes.back(), 1).front();
        EXPECT_TRUE(waitUntil([&] {
            return description.overridesRedirect ? desktop.isViewable(window)
                                                 : desktop.isManaged(window) && (desktop.activeWindow() == window ||
                                                                                 description.kind == WindowKind::dock);
        }));
        return window;
    }
    void moveToTitle(xcb_window_t window) {
        const auto frame = desktop.visibleFrame(window);
        ASSERT_TRUE(frame);
        pointer.moveTo(frame->x + frame->width / 2, frame->y + 8);
    }
    void moveInto(xcb_window_t window) {
        const auto rect = desktop.clientRect(window);
        ASSERT_TRUE(rect);
        pointer.moveTo(rect->x + rect->width / 2, rect->y + rect->height / 2);
    }
    [[nodiscard]] bool waitForReport(NSEventType type) {
        return loop.runUntil([&] { return !reports.empty() && reports.back().type == type; });
    }
    /// Until the window manager has ended the move: it takes no notice of a press before that.
    [[nodiscard]] bool waitForMoveEnd() {
        return loop.runUntil([&] {
            const Reply<xcb_grab_pointer_reply_t> grab{xcb_grab_pointer_reply(
                desktop.xcb(),
                xcb_grab_pointer(desktop.xcb(), 0, desktop.root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                                 XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME),
                nullptr)};
            xcb_ungrab_pointer(desktop.xcb(), XCB_CURRENT_TIME);
            desktop.synchronize();
            return grab->status == XCB_GRAB_STATUS_SUCCESS;
        });
    }
    /// Presses on the active window's title bar; the drag is then in the hands of the window manager.
    void beginDrag(xcb_window_t window) {
        moveToTitle(window);
        pointer.down();
        ASSERT_TRUE(waitForReport(leftMouseDown));
    }
    std::ptrdiff_t dragCount() const { return std::ranges::count(reports, leftMouseDragged, &Report::type); }

    VirtualServer server;
    WindowManager windowManager{server, WindowManager::Kind::openbox};
    DesktopConnection desktop{server.display()};
    Keyboard keyboard{desktop};
    Pointer pointer{desktop};
    std::list<Process> processes;

    EventLoop loop;
    std::unique_ptr<x11::Desktop> brisk = x11::Desktop::open(
        loop, [] {}, server.display().c_str());
    GlobalEventMonitor& monitor = brisk->eventMonitor();
    std::optional<GlobalEventMonitor::Token> token;
    Reports reports;
    bool isWorkDue = false;
    /// What whoever is told of a report says it has no interest in.
    std::optional<CGRect> ignoredRegion;
    xcb_window_t activeAtPress = XCB_WINDOW_NONE;
};

TEST_F(EventMonitorTest, AWindowsMoveIsReportedFromPressToRelease) {
    const xcb_window_t window = openElsewhere({});
    const auto before = *desktop.visibleFrame(window);
    beginDrag(window);
    for (int step = 0; step < 20; ++step) {
        pointer.moveBy(5, 3);
        loop.runFor(milliseconds(2));
    }
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));
    EXPECT_GE(dragCount(), 2);
    EXPECT_EQ(reports.front(), (Report{leftMouseDown}));
    EXPECT_EQ(std::ptrdiff_t(reports.size()), 2 + dragCount()) << testing::PrintToString(reports);
    EXPECT_TRUE(loop.runUntil([&] { return desktop.visibleFrame(window)->x >= before.x + 90; })) << "a real move";
}

TEST_F(EventMonitorTest, MotionIsThinnedAndItsLastIsReported) {
    beginDrag(openElsewhere({}));
    const auto start = std::chrono::steady_clock::now();
    const unsigned wakeUpsBefore = loop.wakeUps();
    for (int step = 0; step < 300; ++step) {
        pointer.moveBy(step % 2 == 0 ? 9 : -8, 0);
        loop.runFor(milliseconds(1));
    }
    const auto elapsed = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
    EXPECT_GE(dragCount(), 10);
    EXPECT_LE(dragCount(), elapsed.count() / 8 + 3);
    EXPECT_LE(loop.wakeUps() - wakeUpsBefore, 4 * dragCount()) << "the motion between two reports wakes nobody";

    // The motion before the release is younger than 8 ms and still precedes it.
    loop.runFor(milliseconds(20));
    reports.clear();
    pointer.moveBy(1, 0);
    ASSERT_TRUE(waitForReport(leftMouseDragged));
    pointer.moveBy(1, 0);
    pointer.moveBy(1, 0);
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));
    EXPECT_EQ(reports, (Reports{{leftMouseDragged}, {leftMouseDragged}, {leftMouseUp}}));
}

TEST_F(EventMonitorTest, MotionThatChangesNothingIsReportedLessOften) {
    beginDrag(openElsewhere({}));
    const auto drag = [&] {
        const auto start = std::chrono::steady_clock::now();
        const auto before = dragCount();
        for (int step = 0; step < 300; ++step) {
            pointer.moveBy(step % 2 == 0 ? 3 : -2, 0);
            loop.runFor(milliseconds(1));
        }
        const auto elapsed = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
        return static_cast<double>(dragCount() - before) / static_cast<double>(elapsed.count());
    };
    const double everywhere = drag();
    ignoredRegion = CGRect{.origin = {0, 0}, .size = {1440, 900}};
    const double inside = drag();
    EXPECT_GT(inside, 0) << "what else may have changed shows in a report";
    EXPECT_LT(inside, 0.3 * everywhere) << "now and then, not each 8 ms";

    ignoredRegion = CGRectInfinite;
    drag();
    const unsigned wakeUpsBefore = loop.wakeUps();
    EXPECT_EQ(drag(), 0) << "motion matters nowhere";
    EXPECT_EQ(loop.wakeUps() - wakeUpsBefore, 0U) << "and so wakes nobody";
    reports.clear();
    keyboard.down(Key::leftShift);
    EXPECT_TRUE(loop.runUntil([&] { return !reports.empty() && reports.back() == Report{leftMouseDragged, true}; }));
    reports.clear();
    pointer.moveBy(1, 0);
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));
    EXPECT_EQ(reports, (Reports{{leftMouseDragged, true}, {leftMouseUp, true}})) << "the last motion is not left out";
}

TEST_F(EventMonitorTest, TheLastMotionNeedsNoRelease) {
    beginDrag(openElsewhere({}));
    pointer.moveBy(1, 0);
    ASSERT_TRUE(waitForReport(leftMouseDragged));
    pointer.moveBy(1, 0);
    EXPECT_TRUE(loop.runUntil([&] { return dragCount() == 2; }));
}

TEST_F(EventMonitorTest, ShiftIsReportedAsItChanges) {
    beginDrag(openElsewhere({}));
    reports.clear();
    keyboard.down(Key::leftShift);
    EXPECT_TRUE(loop.runUntil([&] { return reports == Reports{{leftMouseDragged, true}}; })) << "without any motion";
    keyboard.up(Key::leftShift);
    EXPECT_TRUE(loop.runUntil([&] { return reports.size() == 2 && !reports.back().isShiftHeld; }));
    keyboard.press(Key::leftControl);
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));
    EXPECT_EQ(reports, (Reports{{leftMouseDragged, true}, {leftMouseDragged}, {leftMouseUp}}))
        << "other modifiers are no reason for a report";
}

TEST_F(EventMonitorTest, TheReleaseHasTheModifiersOfItsMoment) {
    const xcb_window_t window = openElsewhere({});
    for (const bool isShiftFirst : {true, false}) {
        SCOPED_TRACE(isShiftFirst ? "Shift is let go just before the button" : "Shift is let go just after the button");
        beginDrag(window);
        keyboard.down(Key::leftShift);
        ASSERT_TRUE(waitForReport(leftMouseDragged));
        pointer.moveBy(1, 1);
        if (isShiftFirst) {
            keyboard.up(Key::leftShift);
            pointer.up();
        } else {
            pointer.up();
            keyboard.up(Key::leftShift);
        }
        ASSERT_TRUE(waitForReport(leftMouseUp));
        EXPECT_EQ(reports.back().isShiftHeld, !isShiftFirst);
        ASSERT_TRUE(waitForMoveEnd());
    }
}

TEST_F(EventMonitorTest, AnInactiveWindowsPressIsReportedOnceItIsActive) {
    const xcb_window_t lower = openElsewhere({.client = {.x = 100, .y = 100, .width = 400, .height = 300}});
    const xcb_window_t upper = openElsewhere({.client = {.x = 700, .y = 400, .width = 400, .height = 300}});
    for (int round = 0; round < 10; ++round) {
        const xcb_window_t target = round % 2 == 0 ? lower : upper;
        ASSERT_NE(desktop.activeWindow(), target);
        reports.clear();
        moveToTitle(target);
        pointer.down();
        // Motion that comes while the press is held back must not overtake it. To and fro: however long that takes, the
        // two windows keep apart.
        ASSERT_TRUE(loop.runUntil([&, step = 0]() mutable {
            pointer.moveBy(step++ % 2 == 0 ? 1 : -1, 0);
            return dragCount() > 0;
        }));
        keyboard.down(Key::leftShift);
        pointer.up();
        keyboard.up(Key::leftShift);
        ASSERT_TRUE(waitForReport(leftMouseUp));
        EXPECT_EQ(activeAtPress, target);
        EXPECT_EQ(reports.front().type, leftMouseDown);
        EXPECT_EQ(reports.back(), (Report{leftMouseUp, true}));
        ASSERT_TRUE(waitForMoveEnd());
    }
}

TEST_F(EventMonitorTest, WhatNeverBecomesActiveIsReportedAllTheSame) {
    openElsewhere({});
    const xcb_window_t menu =
        openElsewhere({.client = {.x = 900, .y = 500, .width = 200, .height = 200}, .overridesRedirect = true});
    moveInto(menu);
    const auto start = std::chrono::steady_clock::now();
    pointer.down();
    pointer.moveBy(1, 1);
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(150)) << "the press was not held back at all";
    EXPECT_EQ(reports.front().type, leftMouseDown);

    reports.clear();
    pointer.moveTo(5, 890);
    pointer.down();
    const auto pressed = std::chrono::steady_clock::now();
    ASSERT_TRUE(waitForReport(leftMouseDown));
    EXPECT_LT(std::chrono::steady_clock::now() - pressed, milliseconds(140))
        << "over no window there is nothing to wait for";
    pointer.up();
}

TEST_F(EventMonitorTest, OwnWindowsAreLeftOut) {
    const xcb_window_t foreign = openElsewhere({.client = {.x = 100, .y = 100, .width = 300, .height = 200}});
    TestClient toolkit(server.display());
    const xcb_window_t framed = toolkit.open({.client = {.x = 700, .y = 100, .width = 300, .height = 200}});
    const xcb_window_t menu =
        toolkit.open({.client = {.x = 700, .y = 500, .width = 300, .height = 200}, .overridesRedirect = true});
    ASSERT_TRUE(waitUntil([&] { return desktop.isManaged(framed) && desktop.isViewable(menu); }));
    const auto drag = [&] {
        pointer.down();
        loop.runFor(milliseconds(5));
        pointer.moveBy(3, 3);
        loop.runFor(milliseconds(5));
        pointer.up();
    };
    moveInto(framed);
    drag();
    moveToTitle(framed);
    drag();
    moveInto(menu);
    drag();
    moveInto(foreign);
    drag();
    ASSERT_TRUE(waitForReport(leftMouseUp));
    EXPECT_EQ(std::ranges::count(reports, leftMouseDown, &Report::type), 1) << testing::PrintToString(reports);
    EXPECT_EQ(activeAtPress, foreign);
}

TEST_F(EventMonitorTest, OnlyTheLeftButtonCountsWhicheverThatIs) {
    const xcb_window_t window = openElsewhere({});
    moveInto(window);
    for (const std::uint8_t button : std::array<std::uint8_t, 4>{2, 3, 4, 5}) {
        pointer.down(button);
        pointer.up(button);
    }
    pointer.down();
    ASSERT_TRUE(waitForReport(leftMouseDown));
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));
    EXPECT_EQ(std::ranges::count(reports, leftMouseDown, &Report::type), 1);

    const std::array<std::uint8_t, 10> leftHanded{3, 2, 1, 4, 5, 6, 7, 8, 9, 10};
    const Reply<xcb_set_pointer_mapping_reply_t> reply{xcb_set_pointer_mapping_reply(
        desktop.xcb(), xcb_set_pointer_mapping(desktop.xcb(), std::uint8_t{leftHanded.size()}, leftHanded.data()),
        nullptr)};
    ASSERT_EQ(reply->status, XCB_MAPPING_STATUS_SUCCESS);
    reports.clear();
    pointer.down(1);
    loop.runFor(milliseconds(20));
    pointer.up(1);
    loop.runFor(milliseconds(20));
    EXPECT_EQ(reports, Reports{});
    pointer.down(3);
    ASSERT_TRUE(waitForReport(leftMouseDown));
    pointer.up(3);
    ASSERT_TRUE(waitForReport(leftMouseUp));
}

TEST_F(EventMonitorTest, ALostReleaseEndsTheDragWithoutShift) {
    const auto loseReleases = [&](bool areLost) {
        struct {
            xcb_input_event_mask_t head{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1};
            std::uint32_t mask = XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
        } selection;
        selection.mask |= areLost ? 0U : unsigned{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};
        const Reply<xcb_generic_error_t> error{xcb_request_check(
            brisk->connection().xcb(),
            xcb_input_xi_select_events_checked(brisk->connection().xcb(), desktop.root(), 1, &selection.head))};
        ASSERT_FALSE(error);
    };
    const xcb_window_t window = openElsewhere({});
    for (const bool isNoticedByMotion : {true, false}) {
        SCOPED_TRACE(isNoticedByMotion ? "noticed by motion" : "noticed by the next press");
        beginDrag(window);
        keyboard.down(Key::leftShift);
        ASSERT_TRUE(waitForReport(leftMouseDragged));
        loseReleases(true);
        pointer.up();
        loseReleases(false);
        reports.clear();
        if (isNoticedByMotion) {
            pointer.moveBy(1, 0);
            ASSERT_TRUE(waitForReport(leftMouseUp));
            EXPECT_EQ(reports, (Reports{{leftMouseUp}}));
        } else {
            pointer.down();
            ASSERT_TRUE(waitForReport(leftMouseDown));
            EXPECT_EQ(reports, (Reports{{leftMouseUp}, {leftMouseDown, true}}));
            pointer.up();
            ASSERT_TRUE(waitForReport(leftMouseUp));
        }
        keyboard.up(Key::leftShift);
    }
}

TEST_F(EventMonitorTest, WhatGoesInMidDragIsReportedWithoutMotion) {
    const xcb_window_t window = openElsewhere({});
    beginDrag(window);
    loop.runFor(milliseconds(30));
    reports.clear();
    processes.clear();
    EXPECT_TRUE(waitForReport(leftMouseDragged)) << "the window closed";
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));

    openElsewhere({});
    beginDrag(desktop.activeWindow());
    loop.runFor(milliseconds(30));
    reports.clear();
    server.setMonitors({{.area = {.x = 0, .y = 0, .width = 720, .height = 900}, .isPrimary = true},
                        {.area = {.x = 720, .y = 0, .width = 720, .height = 900}}});
    EXPECT_TRUE(waitForReport(leftMouseDragged)) << "the displays changed";
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));
}

TEST_F(EventMonitorTest, AnIdleMouseWakesNobody) {
    const xcb_window_t window = openElsewhere({});
    const auto rattle = [&] {
        loop.runFor(milliseconds(200));
        const unsigned before = loop.wakeUps();
        for (int step = 0; step < 20; ++step) {
            pointer.moveBy(step % 2 == 0 ? 2 : -2, 0);
            keyboard.press(Key::leftShift);
        }
        loop.runFor(milliseconds(50));
        return loop.wakeUps() - before;
    };
    moveToTitle(window);
    EXPECT_EQ(rattle(), 0U) << "before any press";
    pointer.down();
    ASSERT_TRUE(waitForReport(leftMouseDown));
    monitor.ignoreRestOfPress();
    EXPECT_EQ(rattle(), 0U) << "a press that is of no interest";
    pointer.up();
    ASSERT_TRUE(waitForMoveEnd());
    pointer.down();
    ASSERT_TRUE(waitForReport(leftMouseDown));
    EXPECT_GT(rattle(), 0U) << "while dragging";
    loop.runFor(milliseconds(200));
    const unsigned beforeRest = loop.wakeUps();
    loop.runFor(milliseconds(100));
    EXPECT_EQ(loop.wakeUps() - beforeRest, 0U) << "at rest in mid-drag";
    reports.clear();
    pointer.moveBy(1, 0);
    EXPECT_TRUE(waitForReport(leftMouseDragged)) << "and sets out again";
    pointer.up();
    ASSERT_TRUE(waitForReport(leftMouseUp));
    EXPECT_EQ(rattle(), 0U) << "after the release";

    monitor.removeMonitor(*token);
    loop.runFor(milliseconds(10));
    reports.clear();
    const unsigned before = loop.wakeUps();
    // On the root window, where clicks change nothing else that would be heard of.
    pointer.moveTo(5, 890);
    pointer.down();
    pointer.up();
    loop.runFor(milliseconds(50));
    EXPECT_EQ(loop.wakeUps() - before, 0U) << "nobody watches";
    watch();
    pointer.down();
    EXPECT_TRUE(waitForReport(leftMouseDown));
    EXPECT_EQ(reports.size(), 1U) << "watching again starts afresh";
    pointer.up();
}

TEST_F(EventMonitorTest, RemovalInMidDragEndsTheReports) {
    beginDrag(openElsewhere({}));
    monitor.removeMonitor(*token);
    reports.clear();
    pointer.moveBy(5, 5);
    pointer.up();
    watch();
    beginDrag(desktop.activeWindow());
    EXPECT_EQ(reports, (Reports{{leftMouseDown}}));
    pointer.up();
}

TEST_F(EventMonitorTest, ThePointerIsMeasuredFromThePrimaryMonitor) {
    struct Row {
        const char* why;
        PixelRect primary;
        int x;
        int y;
        CGPoint expected;
    };
    for (const Row& row : {
             Row{"top row of the only monitor: still inside it", {0, 0, 1440, 900}, 0, 0, {0, 899}},
             Row{"bottom right", {0, 0, 1440, 900}, 1439, 899, {1439, 0}},
             Row{"left of and above a primary monitor elsewhere", {400, 100, 800, 600}, 300, 50, {-100, 649}},
             Row{"below it", {400, 100, 800, 600}, 500, 750, {100, -51}},
         }) {
        SCOPED_TRACE(row.why);
        server.setMonitors(
            {{.area = row.primary, .isPrimary = true}, {.area = {.x = 0, .y = 0, .width = 90, .height = 90}}});
        ASSERT_TRUE(loop.runUntil([&] {
            return brisk->displays().accessibilityOrigin() == CGPoint{double(row.primary.x), double(row.primary.y)} &&
                   brisk->displays().screens().size() == 2;
        }));
        pointer.moveTo(row.x, row.y);
        EXPECT_EQ(monitor.mouseLocation(), row.expected);
    }
}

} // namespace
} // namespace brisk::desktop
