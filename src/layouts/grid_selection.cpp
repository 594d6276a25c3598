#include "layouts/grid_selection.h"

#include <algorithm>

namespace brisk {

WindowGridSelection normalized(const WindowGridSelection& selection) {
    constexpr auto maximum = WindowGridSelection::maximumGridDimension;
    WindowGridSelection result;
    result.columns = std::clamp<std::int64_t>(selection.columns, 1, maximum);
    result.rows = std::clamp<std::int64_t>(selection.rows, 1, maximum);
    result.column = std::clamp<std::int64_t>(selection.column, 0, result.columns - 1);
    result.row = std::clamp<std::int64_t>(selection.row, 0, result.rows - 1);
    result.columnSpan = std::clamp<std::int64_t>(selection.columnSpan, 1, result.columns - result.column);
    result.rowSpan = std::clamp<std::int64_t>(selection.rowSpan, 1, result.rows - result.row);
    return result;
}

CGRect gridFrame(const WindowGridSelection& selection, const CGRect& visibleFrame, double gap) {
    const WindowGridSelection cells = normalized(selection);
    const auto columns = static_cast<double>(cells.columns);
    const auto rows = static_cast<double>(cells.rows);
    const auto column = static_cast<double>(cells.column);
    const auto rowsBelow = static_cast<double>(cells.rows - cells.row - cells.rowSpan);
    const auto columnSpan = static_cast<double>(cells.columnSpan);
    const auto rowSpan = static_cast<double>(cells.rowSpan);

    const double maxGapX = std::max((visibleFrame.width() - columns) / (columns + 1), 0.0);
    const double maxGapY = std::max((visibleFrame.height() - rows) / (rows + 1), 0.0);
    const double effectiveGap = std::min({std::max(gap, 0.0), maximumGap, maxGapX, maxGapY});

    const double cellWidth = std::max((visibleFrame.width() - (columns + 1) * effectiveGap) / columns, 1.0);
    const double cellHeight = std::max((visibleFrame.height() - (rows + 1) * effectiveGap) / rows, 1.0);

    return {.origin = {.x = visibleFrame.minX() + effectiveGap + column * (cellWidth + effectiveGap),
                       .y = visibleFrame.minY() + effectiveGap + rowsBelow * (cellHeight + effectiveGap)},
            .size = {.width = columnSpan * cellWidth + (columnSpan - 1) * effectiveGap,
                     .height = rowSpan * cellHeight + (rowSpan - 1) * effectiveGap}};
}

std::string areaDescription(const WindowGridSelection& selection) {
    const WindowGridSelection cells = normalized(selection);
    return std::to_string(cells.columnSpan) + "×" + std::to_string(cells.rowSpan) + " area on a " +
           std::to_string(cells.columns) + "×" + std::to_string(cells.rows) + " grid";
}

} // namespace brisk
