#include "layouts/grid_picker.h"

#include "support/printing.h"

#include <gtest/gtest.h>

namespace brisk {
namespace {

using Cell = GridPicker::Cell;

constexpr CGSize size{.width = 520, .height = 220};

WindowGridSelection grid(std::int64_t columns, std::int64_t rows, Cell cell = {}, std::int64_t columnSpan = 1,
                         std::int64_t rowSpan = 1) {
    return {.columns = columns,
            .rows = rows,
            .column = cell.column,
            .row = cell.row,
            .columnSpan = columnSpan,
            .rowSpan = rowSpan};
}

CGPoint centre(const GridPicker& picker, Cell cell) {
    const CGRect rect = picker.cellRect(cell, size);
    return {.x = rect.minX() + rect.width() / 2, .y = rect.minY() + rect.height() / 2};
}

TEST(GridPicker, CellsTileTheDrawingWithTheirSpacing) {
    for (std::int64_t columns = 1; columns <= 6; ++columns) {
        for (std::int64_t rows = 1; rows <= 6; ++rows) {
            SCOPED_TRACE(testing::Message() << columns << " x " << rows);
            const GridPicker picker(grid(columns, rows));
            const CGRect first = picker.cellRect({0, 0}, size);
            const CGRect last = picker.cellRect({columns - 1, rows - 1}, size);
            EXPECT_EQ(first.origin, (CGPoint{6, 6}));
            EXPECT_NEAR(last.maxX(), 514, 1e-9);
            EXPECT_NEAR(last.maxY(), 214, 1e-9);
            if (columns > 1) {
                EXPECT_NEAR(picker.cellRect({1, 0}, size).minX() - first.maxX(), 6, 1e-9);
            }
            for (std::int64_t row = 0; row < rows; ++row) {
                for (std::int64_t column = 0; column < columns; ++column) {
                    EXPECT_EQ(picker.cellAt(centre(picker, {column, row}), size), (Cell{column, row}));
                }
            }
        }
    }
}

TEST(GridPicker, EveryPointOfTheDrawingIsInACell) {
    const GridPicker picker(grid(4, 4)); // columns begin at 6, 134.5, 263, 391.5, rows at 6, 59.5, 113, 166.5
    struct Row {
        const char* why;
        CGPoint point;
        std::optional<Cell> expected;
    };
    for (const Row& row : {
             Row{"the corner's margin", {0, 0}, Cell{0, 0}},
             Row{"the end of a cell's spacing", {134, 59}, Cell{0, 0}},
             Row{"where the next cell begins", {134.5, 59.5}, Cell{1, 1}},
             Row{"the far margin", {519.5, 219.5}, Cell{3, 3}},
             Row{"the right edge is outside", {520, 100}, std::nullopt},
             Row{"so is the bottom edge", {100, 220}, std::nullopt},
             Row{"and what is left of the drawing", {-0.5, 100}, std::nullopt},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(picker.cellAt(row.point, size), row.expected);
    }
    EXPECT_EQ(picker.cellAt({3, 3}, {.width = 6, .height = 6}), (Cell{0, 0})) << "no room for a cell";
}

TEST(GridPicker, DraggingSelectsTheBlockBetweenTwoCells) {
    GridPicker picker(grid(4, 4, {0, 0}, 4, 4));
    EXPECT_TRUE(picker.press(centre(picker, {3, 2}), size));
    EXPECT_EQ(picker.selection(), grid(4, 4, {3, 2}));
    EXPECT_TRUE(picker.drag(centre(picker, {1, 0}), size));
    EXPECT_EQ(picker.selection(), grid(4, 4, {1, 0}, 3, 3));
    EXPECT_FALSE(picker.drag({-1, 100}, size)) << "outside, the block stays";
    EXPECT_TRUE(picker.drag(centre(picker, {3, 3}), size)) << "and goes on from the same cell";
    EXPECT_EQ(picker.selection(), grid(4, 4, {3, 2}, 1, 2));
    EXPECT_TRUE(picker.release(centre(picker, {2, 3}), size));
    EXPECT_EQ(picker.selection(), grid(4, 4, {2, 2}, 2, 2));
    EXPECT_FALSE(picker.drag(centre(picker, {0, 0}), size)) << "the press is over";
}

TEST(GridPicker, APressOutsideStartsNothingAndAReleaseOutsideEndsIt) {
    GridPicker picker(grid(3, 3, {1, 1}));
    EXPECT_FALSE(picker.press({520, 10}, size));
    EXPECT_FALSE(picker.drag(centre(picker, {0, 0}), size));
    EXPECT_TRUE(picker.press(centre(picker, {2, 2}), size));
    EXPECT_FALSE(picker.release({600, 300}, size));
    EXPECT_FALSE(picker.drag(centre(picker, {0, 0}), size));
    EXPECT_EQ(picker.selection(), grid(3, 3, {2, 2}));
}

TEST(GridPicker, ArrowKeysMoveAndExtendTheBlock) {
    GridPicker picker(grid(4, 3, {1, 1}, 2, 1));
    EXPECT_TRUE(picker.moveBlock(1, 0));
    EXPECT_FALSE(picker.moveBlock(1, 0)) << "the edge, and the block keeps its size";
    EXPECT_EQ(picker.selection(), grid(4, 3, {2, 1}, 2, 1));
    EXPECT_TRUE(picker.moveBlock(0, -1));
    EXPECT_TRUE(picker.extendBlock(0, 1));
    EXPECT_FALSE(picker.extendBlock(1, 0));
    EXPECT_TRUE(picker.extendBlock(-1, 0));
    EXPECT_FALSE(picker.extendBlock(-1, 0)) << "one cell stays";
    EXPECT_EQ(picker.selection(), grid(4, 3, {2, 0}, 1, 2));
}

TEST(GridPicker, KeepsAnySelectionInsideItsGrid) {
    GridPicker picker({.columns = 9, .rows = 0, .column = 7, .row = -1, .columnSpan = 4, .rowSpan = 0});
    EXPECT_EQ(picker.selection(), grid(6, 1, {5, 0}));
    EXPECT_TRUE(picker.isSelected({5, 0}));
    EXPECT_FALSE(picker.isSelected({4, 0}));
}

} // namespace
} // namespace brisk
