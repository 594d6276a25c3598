#include "platform/x11/drag_pace.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace brisk::x11 {
namespace {

using std::chrono::milliseconds;

constexpr CGRect region{.origin = {100, 200}, .size = {1000, 600}};

struct Report {
    milliseconds after;
    CGPoint pointer;
};

TEST(DragPace, ReportsAnIntervalApart) {
    DragPace pace;
    const DragPace::Clock::time_point start{std::chrono::hours(1)};
    EXPECT_LT(pace.nextReport(), start) << "the first at once";
    EXPECT_FALSE(pace.isAt({}));
    pace.report(start, {});
    EXPECT_TRUE(pace.isAt({}));
    EXPECT_FALSE(pace.isAt({1, 0}));
    EXPECT_EQ(pace.nextReport(), start + milliseconds(8));
}

TEST(DragPace, StaysAreNoLongerThanTheWayOutAtTwiceTheVelocity) {
    struct Row {
        const char* why;
        std::vector<Report> reports;
        CGRect region;
        milliseconds expected;
    };
    for (const Row& row : {
             Row{"one report tells no velocity", {{milliseconds(0), {600, 500}}}, region, milliseconds(0)},
             Row{"two of a pointer that stands",
                 {{milliseconds(0), {600, 500}}, {milliseconds(8), {600, 500}}},
                 region,
                 milliseconds(0)},
             Row{"it may have stood for most of the time",
                 {{milliseconds(0), {600, 500}}, {milliseconds(49), {601, 500}}},
                 region,
                 milliseconds(0)},
             Row{"slow, far from any edge",
                 {{milliseconds(0), {590, 500}}, {milliseconds(48), {600, 500}}},
                 region,
                 milliseconds(32)},
             Row{"100 points to the right at 2 points a millisecond, taken for 5",
                 {{milliseconds(0), {984, 500}}, {milliseconds(8), {1000, 500}}},
                 region,
                 milliseconds(20)},
             Row{"the same to the left",
                 {{milliseconds(0), {216, 500}}, {milliseconds(8), {200, 500}}},
                 region,
                 milliseconds(20)},
             Row{"and down", {{milliseconds(0), {600, 316}}, {milliseconds(8), {600, 300}}}, region, milliseconds(20)},
             Row{"away from an edge it would have to turn round",
                 {{milliseconds(0), {102, 500}}, {milliseconds(8), {118, 500}}},
                 region,
                 milliseconds(18)},
             Row{"along an edge it may leave at any moment",
                 {{milliseconds(0), {400, 201}}, {milliseconds(8), {416, 201}}},
                 region,
                 milliseconds(1)},
             Row{"two reports at once are a millisecond apart at least",
                 {{milliseconds(0), {600, 500}}, {milliseconds(0), {610, 500}}},
                 region,
                 milliseconds(23)},
             Row{"nowhere does anything change",
                 {{milliseconds(0), {0, 0}}, {milliseconds(8), {8000, 0}}},
                 CGRectInfinite,
                 milliseconds(32)},
         }) {
        SCOPED_TRACE(row.why);
        DragPace pace;
        DragPace::Clock::time_point now{std::chrono::hours(1)};
        for (const Report& report : row.reports) {
            now += report.after;
            pace.report(now, report.pointer);
        }
        EXPECT_EQ(std::chrono::duration_cast<milliseconds>(pace.endOfStayIn(row.region) - now), row.expected);
    }
}

} // namespace
} // namespace brisk::x11
