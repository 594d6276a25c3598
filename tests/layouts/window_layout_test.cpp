#include "layouts/window_layout.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <set>

namespace brisk {
namespace {

constexpr CGRect display{.origin = {0, 0}, .size = {1440, 875}};
constexpr CGRect elsewhere{.origin = {333, 222}, .size = {555, 444}};

void expectNear(const CGRect& actual, const CGRect& expected) {
    EXPECT_TRUE(isNear(actual, expected, 1e-9))
        << actual.minX() << ", " << actual.minY() << ", " << actual.width() << ", " << actual.height();
}

TEST(WindowLayout, IdentifiersAreUniqueAndExact) {
    std::set<std::string_view> seen;
    for (const WindowLayout layout : allWindowLayouts) {
        EXPECT_TRUE(seen.insert(rawValue(layout)).second);
        EXPECT_EQ(windowLayoutFromRawValue(rawValue(layout)), layout);
    }
    for (const char* other : {"", "LeftHalf", "lefthalf", "leftHalf ", "window.leftHalf"}) {
        EXPECT_EQ(windowLayoutFromRawValue(other), std::nullopt) << other;
    }
}

TEST(WindowLayout, HalvesCycleFromTheWindowsOwnFrame) {
    CGRect frame = elsewhere;
    for (const CGRect& expected : {CGRect{{0, 0}, {720, 875}}, CGRect{{0, 0}, {960, 875}}, CGRect{{0, 0}, {480, 875}},
                                   CGRect{{0, 0}, {720, 875}}}) {
        frame = layoutFrame(WindowLayout::leftHalf, display, frame, 0);
        expectNear(frame, expected);
    }
    for (const double expectedWidth : {705.0, 943.33, 466.67, 705.0}) {
        frame = layoutFrame(WindowLayout::rightHalf, display, frame, 10);
        EXPECT_NEAR(frame.width(), expectedWidth, 0.01);
        EXPECT_NEAR(frame.maxX(), 1430, 1e-9) << "the right edge stays";
    }
}

TEST(WindowLayout, HalfIsRecognisedWithinTwelvePoints) {
    struct Row {
        const char* why;
        CGRect current;
        double expectedWidth;
    };
    for (const Row& row : {
             Row{"twelve points off still counts as there", {{0, 0}, {732, 875}}, 960},
             Row{"a hair more does not", {{0, 0}, {732.5, 875}}, 720},
             Row{"all four may be off", {{12, -12}, {708, 887}}, 960},
             Row{"a height too far off is another place", {{0, 0}, {720, 862}}, 720},
             Row{"an x too far off is another place", {{12.5, 0}, {720, 875}}, 720},
             Row{"a window on the other side is not there", {{720, 0}, {720, 875}}, 720},
             Row{"nor is one that fills two thirds of the other side", {{480, 0}, {960, 875}}, 720},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_NEAR(layoutFrame(WindowLayout::leftHalf, display, row.current, 0).width(), row.expectedWidth, 1e-9);
    }
    EXPECT_NEAR(layoutFrame(WindowLayout::rightHalf, display, {{0, 0}, {960, 875}}, 0).width(), 720, 1e-9);
}

TEST(WindowLayout, FramesWithAGap) {
    struct Row {
        WindowLayout layout;
        CGRect expected;
    };
    for (const Row& row : {
             Row{WindowLayout::leftHalf, {{10, 10}, {705, 855}}},
             Row{WindowLayout::rightHalf, {{725, 10}, {705, 855}}},
             Row{WindowLayout::topHalf, {{10, 442.5}, {1420, 422.5}}},
             Row{WindowLayout::bottomHalf, {{10, 10}, {1420, 422.5}}},
             Row{WindowLayout::maximize, {{10, 10}, {1420, 855}}},
             Row{WindowLayout::center, {{208.8, 129.7}, {1022.4, 615.6}}},
             Row{WindowLayout::topLeft, {{10, 442.5}, {705, 422.5}}},
             Row{WindowLayout::topRight, {{725, 442.5}, {705, 422.5}}},
             Row{WindowLayout::bottomLeft, {{10, 10}, {705, 422.5}}},
             Row{WindowLayout::bottomRight, {{725, 10}, {705, 422.5}}},
             Row{WindowLayout::restore, elsewhere},
         }) {
        SCOPED_TRACE(rawValue(row.layout));
        expectNear(layoutFrame(row.layout, display, elsewhere, 10), row.expected);
    }
}

} // namespace
} // namespace brisk
