#include "layouts/grid_picker.h"

#include <algorithm>
#include <cstdlib>

namespace brisk {

namespace {

/// From the start of one cell to the start of the next, along an axis of that length.
double pitch(double length, std::int64_t count) {
    return (length - GridPicker::cellSpacing) / static_cast<double>(count);
}

std::int64_t indexAt(double position, double length, std::int64_t count) {
    const double step = pitch(length, count);
    // A drawing no larger than its margins has room for no cell.
    const double index = step > 0 ? (position - GridPicker::cellSpacing) / step : 0;
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(index), 0, count - 1);
}

} // namespace

bool GridPicker::isSelected(Cell cell) const {
    return cell.column >= selection_.column && cell.column < selection_.column + selection_.columnSpan &&
           cell.row >= selection_.row && cell.row < selection_.row + selection_.rowSpan;
}

CGRect GridPicker::cellRect(Cell cell, CGSize size) const {
    const CGSize step{.width = pitch(size.width, selection_.columns), .height = pitch(size.height, selection_.rows)};
    return {.origin = {.x = cellSpacing + static_cast<double>(cell.column) * step.width,
                       .y = cellSpacing + static_cast<double>(cell.row) * step.height},
            .size = {.width = step.width - cellSpacing, .height = step.height - cellSpacing}};
}

std::optional<GridPicker::Cell> GridPicker::cellAt(CGPoint point, CGSize size) const {
    if (!CGRect{.origin = {}, .size = size}.contains(point)) {
        return std::nullopt;
    }
    return Cell{.column = indexAt(point.x, size.width, selection_.columns),
                .row = indexAt(point.y, size.height, selection_.rows)};
}

bool GridPicker::press(CGPoint point, CGSize size) {
    const auto cell = cellAt(point, size);
    if (!cell) {
        return false;
    }
    dragAnchor_ = cell;
    return drag(point, size);
}

bool GridPicker::drag(CGPoint point, CGSize size) {
    const auto cell = cellAt(point, size);
    if (!dragAnchor_ || !cell) {
        return false;
    }
    select({.columns = selection_.columns,
            .rows = selection_.rows,
            .column = std::min(dragAnchor_->column, cell->column),
            .row = std::min(dragAnchor_->row, cell->row),
            .columnSpan = std::abs(dragAnchor_->column - cell->column) + 1,
            .rowSpan = std::abs(dragAnchor_->row - cell->row) + 1});
    return true;
}

bool GridPicker::release(CGPoint point, CGSize size) {
    const bool changes = drag(point, size);
    dragAnchor_.reset();
    return changes;
}

bool GridPicker::moveBlock(std::int64_t columns, std::int64_t rows) {
    WindowGridSelection block = selection_;
    block.column = std::clamp<std::int64_t>(block.column + columns, 0, block.columns - block.columnSpan);
    block.row = std::clamp<std::int64_t>(block.row + rows, 0, block.rows - block.rowSpan);
    return replaceBlock(block);
}

bool GridPicker::extendBlock(std::int64_t columns, std::int64_t rows) {
    WindowGridSelection block = selection_;
    block.columnSpan += columns;
    block.rowSpan += rows;
    return replaceBlock(block);
}

bool GridPicker::replaceBlock(const WindowGridSelection& block) {
    const WindowGridSelection before = selection_;
    select(block);
    return selection_ != before;
}

} // namespace brisk
