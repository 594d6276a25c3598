#include "drag/window_drag_snap_controller.h"

#include "platform/simulated/desktop.h"
#include "support/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brisk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down what it is told to show: the active identifier, "nothing active", or "hidden".
class RecordingOverlay final : public WindowDragOverlay {
public:
    explicit RecordingOverlay(std::vector<std::string>& effects) : effects_(effects) {}
    void show(const std::vector<WindowDragZone>&, const std::optional<CommandIdentifier>& active,
              const ScreenInfo&) override {
        effects_.push_back("show " + active.value_or("nothing active"));
    }
    void hide() override { effects_.emplace_back("hide"); }

private:
    std::vector<std::string>& effects_;
};

class WindowDragSnapControllerTest : public testing::Test {
protected:
    static constexpr NSEventModifierFlags shift = NSEventModifierFlagShift;
    static constexpr CGRect start{.origin = {100, 100}, .size = {640, 480}};

    // The desktop's events, as a person makes them.
    void press() { send(NSEventType::leftMouseDown, 0); }
    void drag(NSEventModifierFlags flags, CGPoint by) {
        window->frame.origin.x += by.x;
        window->frame.origin.y += by.y;
        send(NSEventType::leftMouseDragged, flags);
    }
    void release(NSEventModifierFlags flags) { send(NSEventType::leftMouseUp, flags); }
    void send(NSEventType type, NSEventModifierFlags flags) {
        desktop.eventMonitor.send(type, flags);
        desktop.mainQueue.run();
    }
    std::vector<std::string> takeEffects() { return std::exchange(effects, {}); }

    WindowDragSnapController::Callbacks callbacks() {
        return {
            .appProvider = [this] { return desktop.workspace.frontmost; },
            .builtInLayoutsProvider = [this] { return builtIn; },
            .customLayoutsProvider = [this] { return custom; },
            .gapProvider = [] { return 0.0; },
            .onSnap =
                [this](const WindowDragTarget& target, const RunningApplicationRef& app) {
                    effects.push_back("snap " + commandIdentifier(target) + " " + app->localizedName().value_or("?"));
                },
            .makeOverlay =
                [this] {
                    effects.emplace_back("make overlay");
                    return std::make_unique<RecordingOverlay>(effects);
                },
        };
    }

    simulated::Desktop desktop;
    simulated::ApplicationRef application = desktop.launchInFront("Editor", start);
    simulated::WindowRef window = application->windows.front();
    std::vector<WindowLayout> builtIn{WindowLayout::leftHalf, WindowLayout::maximize};
    std::vector<CustomWindowLayout> custom;
    std::vector<std::string> effects;
    WindowManager manager{desktop.accessibility};
    std::shared_ptr<WindowDragSnapController> controller = std::make_shared<WindowDragSnapController>(
        manager, desktop.accessibility, desktop.eventMonitor, desktop.mainQueue, callbacks());

    void SetUp() override {
        controller->start();
        desktop.eventMonitor.pointer = {1000, 500};
    }
};

TEST_F(WindowDragSnapControllerTest, DropAppliesTheZoneUnderThePointerAtTheLastDrag) {
    press();
    drag(shift, {30, 0});
    EXPECT_THAT(takeEffects(), ElementsAre("make overlay", "show window.maximize"));
    desktop.eventMonitor.pointer = {100, 500};
    drag(shift, {30, 0});
    EXPECT_THAT(takeEffects(), ElementsAre("show window.leftHalf"));
    desktop.eventMonitor.pointer = {1000, 500};
    release(shift);
    EXPECT_THAT(takeEffects(), ElementsAre("hide", "snap window.leftHalf Editor"))
        << "the pointer is not asked again, and the overlay is gone before the drop";
}

// Each row is a way through the gesture's states, ending with a release with Shift unless it says otherwise.
TEST_F(WindowDragSnapControllerTest, GesturesThatDoNotSnap) {
    const auto dragged = [&](NSEventModifierFlags flags, CGPoint by) { return [=, this] { drag(flags, by); }; };
    struct Row {
        const char* why;
        std::function<void()> gesture;
        std::vector<std::string> expected;
    };
    for (const Row& row : std::vector<Row>{
             {"a click", [] {}, {"hide"}},
             {"two points are no move", dragged(shift, {2, -2}), {"hide", "hide"}},
             {"never Shift", dragged(0, {50, 0}), {"hide", "hide"}},
             {"a resize with Shift",
              [&] {
                  window->frame.size.width += 2.5;
                  drag(shift, {50, 0});
                  drag(shift, {50, 0});
              },
              {"hide", "hide"}},
             {"the window is closed in mid-drag",
              [&] {
                  drag(shift, {50, 0});
                  window->exists = false;
                  drag(shift, {50, 0});
              },
              {"show window.maximize", "hide", "hide"}},
             {"Shift is let go and a drag event follows",
              [&] {
                  drag(shift, {50, 0});
                  drag(0, {50, 0});
              },
              {"show window.maximize", "hide", "hide"}},
             {"the display under the pointer goes",
              [&] {
                  const auto displays = std::exchange(desktop.accessibility.displays, {});
                  drag(shift, {50, 0});
                  desktop.accessibility.displays = displays;
              },
              {"hide", "hide"}},
             {"the pointer is in no zone",
              [&] {
                  builtIn = {WindowLayout::leftHalf};
                  drag(shift, {50, 0});
              },
              {"show nothing active", "hide"}},
         }) {
        SCOPED_TRACE(row.why);
        // An overlay that exists, so that hiding shows among the effects.
        press();
        drag(shift, {30, 0});
        release(0);
        *window = {.frame = start};
        builtIn = {WindowLayout::leftHalf, WindowLayout::maximize};
        press();
        takeEffects();
        row.gesture();
        release(shift);
        EXPECT_EQ(takeEffects(), row.expected);
        window->exists = true;
    }
}

TEST_F(WindowDragSnapControllerTest, ShiftMayComeAndGoDuringTheDrag) {
    press();
    drag(0, {50, 0});
    drag(shift, {1, 0});
    drag(0, {1, 0});
    drag(shift, {1, 0});
    release(shift);
    EXPECT_THAT(takeEffects(), ElementsAre("make overlay", "show window.maximize", "hide", "show window.maximize",
                                           "hide", "snap window.maximize Editor"));
    press();
    drag(shift, {50, 0});
    release(0);
    EXPECT_THAT(takeEffects(), ElementsAre("hide", "show window.maximize", "hide")) << "released without Shift";
}

TEST_F(WindowDragSnapControllerTest, AWindowBackWhereItStartedKeepsItsSelection) {
    press();
    drag(shift, {50, 0});
    drag(shift, {-49, 1});
    EXPECT_THAT(takeEffects(), ElementsAre("make overlay", "show window.maximize", "hide"));
    release(shift);
    EXPECT_THAT(takeEffects(), ElementsAre("hide", "snap window.maximize Editor"));
}

TEST_F(WindowDragSnapControllerTest, NothingIsTrackedWithoutTrustZonesApplicationOrWindow) {
    const auto gesture = [&] {
        press();
        drag(shift, {50, 0});
        release(shift);
        return takeEffects();
    };
    desktop.accessibility.isTrusted = false;
    EXPECT_THAT(gesture(), IsEmpty());
    desktop.accessibility.isTrusted = true;

    builtIn.clear();
    custom = {{.id = "A", .name = "A", .isAvailableForDragging = false}};
    desktop.log.clear();
    EXPECT_THAT(gesture(), IsEmpty());
    EXPECT_THAT(desktop.log.calls(), ElementsAre("AXIsProcessTrusted", "ignoreRestOfPress"))
        << "no window is asked for, and no more of the mouse";
    custom.front().isAvailableForDragging = true;
    EXPECT_THAT(gesture(), testing::Contains("snap window.custom.A Editor"));

    const auto frontmost = std::exchange(desktop.workspace.frontmost, nullptr);
    EXPECT_THAT(gesture(), ElementsAre("hide", "hide"));
    desktop.workspace.frontmost = frontmost;
    window->sizeReadError = kAXErrorCannotComplete;
    EXPECT_THAT(gesture(), ElementsAre("hide", "hide"));
}

TEST_F(WindowDragSnapControllerTest, DragsWithoutShiftReadNoWindow) {
    press();
    desktop.log.clear();
    drag(0, {50, 0});
    drag(0, {50, 0});
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
    drag(shift, {50, 0});
    EXPECT_FALSE(desktop.log.calls().empty());
}

TEST_F(WindowDragSnapControllerTest, TheMouseIsWatchedOnlyAsLongAsTheGestureMaySnap) {
    const auto isIgnored = [&] { return std::ranges::count(desktop.log.calls(), "ignoreRestOfPress") == 1; };
    press();
    drag(0, {50, 0});
    drag(shift, {50, 0});
    EXPECT_FALSE(isIgnored());
    window->frame.size.width += 50;
    drag(shift, {50, 0});
    EXPECT_TRUE(isIgnored());
}

TEST_F(WindowDragSnapControllerTest, MotionIsOfNoInterestAsLongAsItChangesNothing) {
    std::optional<CGRect>& ignored = desktop.eventMonitor.ignoredRegion;
    const auto ignoredAfter = [&](NSEventModifierFlags flags, CGPoint by) {
        ignored.reset();
        drag(flags, by);
        return ignored;
    };
    press();
    EXPECT_EQ(ignoredAfter(0, {1, 0}), CGRectInfinite) << "as long as Shift is not held";
    EXPECT_EQ(ignoredAfter(shift, {1, 0}), std::nullopt) << "the window is about to move";
    EXPECT_EQ(ignoredAfter(shift, {18, 0}), (CGRect{{982, 482}, {36, 36}}))
        << "18 points back the window would count as not moved";
    drag(shift, {2000, 0});
    const auto region = ignoredAfter(shift, {0, 0});
    ASSERT_TRUE(region);
    EXPECT_TRUE(region->contains(desktop.eventMonitor.pointer));
    EXPECT_FALSE(region->contains({100, 500})) << "there is another zone";
}

TEST_F(WindowDragSnapControllerTest, StopEndsTheGestureAndTheWatching) {
    controller->start();
    EXPECT_THAT(desktop.log.calls(), ElementsAre("addGlobalMonitorForEventsMatchingMask 70")) << "started once";
    press();
    drag(shift, {50, 0});
    takeEffects();
    controller->stop();
    controller->stop();
    EXPECT_THAT(takeEffects(), ElementsAre("hide", "hide"));
    release(shift);
    EXPECT_THAT(takeEffects(), IsEmpty());

    controller->start();
    press();
    drag(shift, {50, 0});
    EXPECT_THAT(takeEffects(), ElementsAre("hide", "show window.maximize"));
}

TEST_F(WindowDragSnapControllerTest, EventsThatOutliveTheControllerDoNothing) {
    press();
    drag(shift, {50, 0});
    takeEffects();
    desktop.eventMonitor.send(NSEventType::leftMouseUp, shift);
    controller.reset();
    desktop.mainQueue.run();
    EXPECT_THAT(takeEffects(), IsEmpty());
}

} // namespace
} // namespace brisk
