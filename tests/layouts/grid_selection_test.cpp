#include "layouts/grid_selection.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace brisk {
namespace {

constexpr CGRect laptopArea{.origin = {0, 0}, .size = {1440, 875}};

TEST(GridSelection, NormalisationBringsEveryFieldIntoTheGrid) {
    constexpr auto huge = std::numeric_limits<std::int64_t>::max();
    constexpr auto tiny = std::numeric_limits<std::int64_t>::min();
    struct Row {
        const char* why;
        WindowGridSelection given;
        WindowGridSelection expected;
        const char* description;
    };
    for (const Row& row : {
             Row{"a block inside its grid stays", {3, 2, 1, 0, 2, 1}, {3, 2, 1, 0, 2, 1}, "2×1 area on a 3×2 grid"},
             Row{"each step uses the step before", {0, 9, -1, 2, 0, 9}, {1, 6, 0, 2, 1, 4}, "1×4 area on a 1×6 grid"},
             Row{"a column beyond the grid", {3, 1, 7, 0, 1, 1}, {3, 1, 2, 0, 1, 1}, "1×1 area on a 3×1 grid"},
             Row{"the largest integers do not wrap",
                 {huge, huge, huge, huge, huge, huge},
                 {6, 6, 5, 5, 1, 1},
                 "1×1 area on a 6×6 grid"},
             Row{"nor do the smallest",
                 {tiny, tiny, tiny, tiny, tiny, tiny},
                 {1, 1, 0, 0, 1, 1},
                 "1×1 area on a 1×1 grid"},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(normalized(row.given), row.expected);
        EXPECT_EQ(normalized(normalized(row.given)), normalized(row.given));
        EXPECT_EQ(areaDescription(row.given), row.description);
    }
}

TEST(GridSelection, FramesCountRowsFromTheTopAndSpanInnerGaps) {
    const CGRect block = gridFrame({3, 2, 1, 0, 2, 1}, laptopArea, 10);
    EXPECT_NEAR(block.minX(), 486.67, 0.01);
    EXPECT_NEAR(block.minY(), 442.5, 0.01);
    EXPECT_NEAR(block.width(), 943.33, 0.01);
    EXPECT_NEAR(block.height(), 422.5, 0.01);
}

// Whatever the grid, gap and place of the display: cells, gaps and edges add up to the display, nothing overlaps.
TEST(GridSelection, CellsAndGapsTileTheArea) {
    const CGRect area{.origin = {-1919.5, 1117}, .size = {1920, 1053}};
    for (std::int64_t columns = 1; columns <= 6; ++columns) {
        for (std::int64_t rows = 1; rows <= 6; ++rows) {
            for (const double gap : {0.0, 7.0, 64.0}) {
                const CGRect whole = gridFrame({columns, rows, 0, 0, columns, rows}, area, gap);
                EXPECT_NEAR(whole.minX() - area.minX(), gap, 1e-9);
                EXPECT_NEAR(area.maxX() - whole.maxX(), gap, 1e-9);
                EXPECT_NEAR(whole.minY() - area.minY(), gap, 1e-9);
                EXPECT_NEAR(area.maxY() - whole.maxY(), gap, 1e-9);
                for (std::int64_t column = 1; column < columns; ++column) {
                    const CGRect left = gridFrame({columns, rows, column - 1, 0, 1, 1}, area, gap);
                    const CGRect right = gridFrame({columns, rows, column, 0, 1, 1}, area, gap);
                    EXPECT_NEAR(right.minX() - left.maxX(), gap, 1e-9);
                }
                for (std::int64_t row = 1; row < rows; ++row) {
                    const CGRect upper = gridFrame({columns, rows, 0, row - 1, 1, 1}, area, gap);
                    const CGRect lower = gridFrame({columns, rows, 0, row, 1, 1}, area, gap);
                    EXPECT_NEAR(upper.minY() - lower.maxY(), gap, 1e-9);
                }
            }
        }
    }
}

TEST(GridSelection, GapYieldsBeforeCellsVanish) {
    const CGRect cell = gridFrame({6, 6, 0, 0, 1, 1}, {{0, 0}, {50, 50}}, 10);
    EXPECT_NEAR(cell.minX(), 44.0 / 7, 1e-9);
    EXPECT_NEAR(cell.width(), 1, 1e-9);
    EXPECT_NEAR(cell.height(), 1, 1e-9);

    const CGRect narrow = gridFrame({6, 1, 0, 0, 6, 1}, {{0, 0}, {5, 400}}, 10);
    EXPECT_EQ(narrow.width(), 6) << "fewer points than columns: no gap and one point a cell, past the area";
    EXPECT_EQ(narrow.minX(), 0);

    EXPECT_EQ(gridFrame({2, 1, 0, 0, 1, 1}, laptopArea, 100), gridFrame({2, 1, 0, 0, 1, 1}, laptopArea, maximumGap));
    EXPECT_EQ(gridFrame({2, 1, 0, 0, 1, 1}, laptopArea, -5), gridFrame({2, 1, 0, 0, 1, 1}, laptopArea, 0));
}

} // namespace
} // namespace brisk
