#include "platform/x11/drag_pace.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace brisk::x11 {
namespace {

using std::chrono::milliseconds;

constexpr CGRect region{.origin = {100, 200}, .size = {1000, 600}};

struct Look {
    milliseconds after;
    CGPoint pointer;
};

/// A drag that is reported at its first look, and whose motion then does not matter within a region.
struct Drag {
    explicit Drag(const std::vector<Look>& looks, const CGRect& ignored = region) {
        pace.report(now, looks.front().pointer);
        pace.ignoreMotionWithin(ignored);
        for (std::size_t i = 1; i < looks.size(); ++i) {
            now += looks[i].after;
            pace.look(now, looks[i].pointer);
        }
    }
    DragPace::Clock::time_point now{std::chrono::hours(1)};
    DragPace pace;
};

TEST(DragPace, ReportsAnIntervalApart) {
    DragPace pace;
    const DragPace::Clock::time_point start{std::chrono::hours(1)};
    EXPECT_LT(pace.nextReport(), start) << "the first at once";
    pace.report(start, {});
    pace.look(start + milliseconds(5), {1, 0});
    EXPECT_EQ(pace.nextReport(), start + milliseconds(8)) << "a look is no report";
}

TEST(DragPace, ReportsMotionThatMattersAndNowAndThenAnyOther) {
    struct Row {
        const char* why;
        std::vector<Look> looks;
        bool isDue;
        bool isAtRest = false;
    };
    for (const Row& row : {
             Row{"inside", {{{}, {600, 500}}, {milliseconds(8), {620, 500}}}, false},
             Row{"outside", {{{}, {600, 500}}, {milliseconds(8), {620, 900}}}, true},
             Row{"on the far edge, which is the neighbour's",
                 {{{}, {1090, 500}}, {milliseconds(8), {1100, 500}}},
                 true},
             Row{"inside, 242 ms after the report",
                 {{{}, {600, 500}}, {milliseconds(210), {600, 500}}, {milliseconds(32), {620, 500}}},
                 false},
             Row{"inside, 250 ms after the report",
                 {{{}, {600, 500}}, {milliseconds(242), {610, 500}}, {milliseconds(8), {620, 500}}},
                 true},
             Row{"outside, but where it was reported", {{{}, {600, 900}}, {milliseconds(8), {600, 900}}}, false},
             Row{"twice where it was",
                 {{{}, {600, 500}}, {milliseconds(8), {600, 500}}, {milliseconds(8), {600, 500}}},
                 false,
                 true},
             Row{"off again after a look at rest",
                 {{{}, {600, 500}}, {milliseconds(8), {600, 500}}, {milliseconds(8), {601, 500}}},
                 false},
         }) {
        SCOPED_TRACE(row.why);
        const Drag drag(row.looks);
        EXPECT_EQ(drag.pace.isReportDue(), row.isDue);
        EXPECT_EQ(drag.pace.isAtRest(), row.isAtRest);
    }
}

TEST(DragPace, AReportEndsWhatWasIgnored) {
    Drag drag({{{}, {600, 500}}, {milliseconds(8), {600, 500}}, {milliseconds(8), {600, 500}}});
    drag.pace.report(drag.now, {600, 500});
    EXPECT_FALSE(drag.pace.isAtRest());
    drag.pace.look(drag.now, {601, 500});
    EXPECT_TRUE(drag.pace.isReportDue());
}

TEST(DragPace, LooksNoLaterThanAPointerOfTwiceTheVelocityLeaves) {
    struct Row {
        const char* why;
        std::vector<Look> looks;
        milliseconds expected;
    };
    for (const Row& row : {
             Row{"one look tells no velocity", {{{}, {600, 500}}}, milliseconds(8)},
             Row{"two of a pointer that stands", {{{}, {600, 500}}, {milliseconds(8), {600, 500}}}, milliseconds(8)},
             Row{"it may have stood for most of the time",
                 {{{}, {600, 500}}, {milliseconds(49), {601, 500}}},
                 milliseconds(8)},
             Row{"slow, far from any edge", {{{}, {590, 500}}, {milliseconds(48), {600, 500}}}, milliseconds(32)},
             Row{"100 points to the right at 2 points a millisecond, taken for 5",
                 {{{}, {984, 500}}, {milliseconds(8), {1000, 500}}},
                 milliseconds(20)},
             Row{"the same to the left", {{{}, {216, 500}}, {milliseconds(8), {200, 500}}}, milliseconds(20)},
             Row{"and down", {{{}, {600, 316}}, {milliseconds(8), {600, 300}}}, milliseconds(20)},
             Row{"away from an edge it would have to turn round",
                 {{{}, {102, 500}}, {milliseconds(8), {118, 500}}},
                 milliseconds(18)},
             Row{"along an edge it may leave at any moment",
                 {{{}, {400, 201}}, {milliseconds(8), {416, 201}}},
                 milliseconds(8)},
             Row{"two looks at once tell no velocity",
                 {{{}, {600, 500}}, {milliseconds(3), {610, 500}}},
                 milliseconds(8)},
             Row{"and take none away",
                 {{{}, {984, 500}}, {milliseconds(8), {1000, 500}}, {milliseconds(3), {1000, 500}}},
                 milliseconds(20)},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(Drag(row.looks).pace.timeToNextLook(), row.expected);
    }
    EXPECT_EQ(Drag({{{}, {0, 0}}, {milliseconds(8), {1, 0}}}, CGRectInfinite).pace.timeToNextLook(), std::nullopt);
}

} // namespace
} // namespace brisk::x11
