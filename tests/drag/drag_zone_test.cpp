#include "drag/drag_zone.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace brisk {
namespace {

constexpr CGRect usable{.origin = {0, 0}, .size = {1440, 875}};
constexpr CGRect notInTheCycle{.origin = {333, 222}, .size = {555, 444}};

CustomWindowLayout custom(const char* id, const WindowGridSelection& selection, bool draggable) {
    return {.id = id, .name = id, .selection = selection, .isAvailableForDragging = draggable};
}

std::vector<CommandIdentifier> identifiers(const std::vector<WindowDragTarget>& targets) {
    std::vector<CommandIdentifier> result;
    result.reserve(targets.size());
    for (const WindowDragTarget& target : targets) {
        result.push_back(commandIdentifier(target));
    }
    return result;
}

TEST(DragTargets, BuiltInsFirstWithoutRestoreThenDraggableCustomLayouts) {
    const std::array builtIn{WindowLayout::leftHalf, WindowLayout::maximize, WindowLayout::restore};
    const std::array layouts{custom("a", {4, 4, 0, 0, 1, 1}, true), custom("b", {4, 4, 0, 0, 1, 1}, false),
                             custom("c", {2, 2, 0, 0, 1, 1}, true)};
    EXPECT_EQ(
        identifiers(dragTargets(builtIn, layouts)),
        (std::vector<CommandIdentifier>{"window.leftHalf", "window.maximize", "window.custom.a", "window.custom.c"}));
    EXPECT_TRUE(dragTargets({}, {}).empty());
}

TEST(DragZones, AreWhatTheCommandsWouldDo) {
    const CGRect leftHalf{{0, 0}, {720, 875}};
    const std::array targets{WindowDragTarget{WindowLayout::leftHalf}, WindowDragTarget{WindowLayout::center},
                             WindowDragTarget{custom("a", {3, 2, 1, 0, 2, 1}, true)}};
    const auto zones = buildZones(targets, usable, 0, leftHalf);
    ASSERT_EQ(zones.size(), 3U);
    EXPECT_EQ(zones[0].frame.width(), 960) << "a window in the left half is offered the cycle's next width";
    EXPECT_EQ(zones[1].frame, layoutFrame(WindowLayout::center, usable, notInTheCycle, 0));
    EXPECT_EQ(zones[2].frame, gridFrame({3, 2, 1, 0, 2, 1}, usable, 0));
}

TEST(DragZones, SmallestZoneUnderThePointerWins) {
    const WindowDragTarget topLeft = WindowLayout::topLeft;
    const WindowDragTarget maximize = WindowLayout::maximize;
    const WindowDragTarget first = custom("first", {2, 2, 1, 1, 1, 1}, true);
    const WindowDragTarget second = custom("second", {2, 2, 1, 1, 1, 1}, true);
    struct Row {
        const char* why;
        std::vector<WindowDragTarget> targets;
        CGPoint point;
        std::optional<WindowDragTarget> expected;
    };
    for (const Row& row : {
             Row{"a quarter lies inside the whole", {maximize, topLeft}, {100, 800}, topLeft},
             Row{"whatever their order", {topLeft, maximize}, {100, 800}, topLeft},
             Row{"beside the quarter", {topLeft, maximize}, {100, 100}, maximize},
             Row{"equal areas: the earlier", {first, second}, {1000, 100}, first},
             Row{"equal areas, other order", {second, first}, {1000, 100}, second},
             Row{"the right edge is outside", {topLeft}, {720, 800}, std::nullopt},
             Row{"the left edge is inside", {topLeft}, {0, 800}, topLeft},
             Row{"no zone there", {topLeft}, {100, 100}, std::nullopt},
             Row{"no zones at all", {}, {100, 100}, std::nullopt},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(targetAtPoint(buildZones(row.targets, usable, 0, notInTheCycle), row.point), row.expected);
    }
}

TEST(RegionAroundPoint, HasOneTargetAndEndsAtItsEdges) {
    const CGRect screen{.origin = {0, 0}, .size = {1440, 900}};
    const std::vector<WindowDragTarget> targets{WindowLayout::leftHalf, WindowLayout::maximize, WindowLayout::center,
                                                custom("a", {3, 3, 1, 1, 1, 1}, true)};
    const auto zones = buildZones(targets, usable, 10, notInTheCycle);
    constexpr double farther = 10'000;
    for (int x = 1; x < 1440; x += 45) {
        for (int y = 1; y < 900; y += 45) {
            const CGPoint point{static_cast<double>(x), static_cast<double>(y)};
            SCOPED_TRACE(testing::PrintToString(point));
            const auto target = targetAtPoint(zones, point);
            const CGRect region = regionAroundPoint(zones, screen, point, farther);
            ASSERT_TRUE(region.contains(point));
            constexpr double inside = 0.01;
            for (const CGPoint corner : {region.origin, CGPoint{region.maxX() - inside, region.minY()},
                                         CGPoint{region.minX(), region.maxY() - inside},
                                         CGPoint{region.maxX() - inside, region.maxY() - inside}}) {
                EXPECT_EQ(targetAtPoint(zones, corner), target);
                EXPECT_TRUE(screen.contains(corner));
            }
        }
    }
    const WindowDragZone zone{.target = WindowLayout::center, .frame = {{400, 300}, {500, 200}}};
    EXPECT_EQ(regionAroundPoint(std::vector{zone}, screen, {450, 350}, farther), zone.frame) << "as large as may be";
    EXPECT_EQ(regionAroundPoint({}, screen, {100, 50}, farther), screen) << "nothing but the display";
    EXPECT_EQ(regionAroundPoint(zones, screen, {1400, 890}, 2), (CGRect{{1398, 888}, {4, 4}})) << "within reach";
}

TEST(ScreenContainingPoint, ContainsElseNearestElseEarlier) {
    const ScreenInfo left{.frame = {{0, 0}, {1000, 800}}, .visibleFrame = {{0, 0}, {1000, 760}}};
    const ScreenInfo right{.frame = {{1000, 0}, {1000, 1000}}, .visibleFrame = {{1000, 0}, {1000, 1000}}};
    const ScreenInfo far{.frame = {{3000, 0}, {1000, 800}}, .visibleFrame = {{3000, 0}, {1000, 800}}};
    struct Row {
        const char* why;
        std::vector<ScreenInfo> screens;
        CGPoint point;
        std::optional<ScreenInfo> expected;
    };
    for (const Row& row : {
             Row{"inside", {left, right}, {999, 799}, left},
             Row{"a shared edge belongs to the right one", {left, right}, {1000, 10}, right},
             Row{"above the lower display, nearest by corner distance", {left, right}, {900, 950}, right},
             Row{"between two at equal distance: the earlier", {right, far}, {2500, 400}, right},
             Row{"the same, other order", {far, right}, {2500, 400}, far},
             Row{"far off one display", {left}, {-9000, 9000}, left},
             Row{"no display", {}, {0, 0}, std::nullopt},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(screenContainingPoint(row.point, row.screens), row.expected);
    }
}

} // namespace
} // namespace brisk
