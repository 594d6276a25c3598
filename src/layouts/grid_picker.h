#pragma once

#include "geometry/rectangle.h"
#include "layouts/grid_selection.h"

#include <cstdint>
#include <optional>

namespace brisk {

/// Choosing a block of cells by pressing on one and dragging to another, or with the arrow keys. Points and rectangles
/// are the drawing's own: points, origin at its top left, y down, so that row 0 is at the top as it is on the display.
///
/// What changes the selection returns whether it did, or may have: the selection is to be shown and reported again.
class GridPicker {
public:
    /// Between cells, and between the outer cells and the drawing's edges.
    static constexpr double cellSpacing = 6;

    struct Cell {
        std::int64_t column = 0;
        std::int64_t row = 0;
        friend bool operator==(const Cell&, const Cell&) = default;
    };

    explicit GridPicker(const WindowGridSelection& selection) : selection_(normalized(selection)) {}

    /// Always normalised.
    const WindowGridSelection& selection() const { return selection_; }
    void select(const WindowGridSelection& selection) { selection_ = normalized(selection); }

    bool isSelected(Cell cell) const;
    CGRect cellRect(Cell cell, CGSize size) const;
    /// The spacing belongs to the cell on its left or above, the outer margin to the nearest cell; outside the drawing
    /// is no cell.
    std::optional<Cell> cellAt(CGPoint point, CGSize size) const;

    bool press(CGPoint point, CGSize size);
    bool drag(CGPoint point, CGSize size);
    bool release(CGPoint point, CGSize size);

    /// Moves the block by that many cells, as far as the grid reaches.
    bool moveBlock(std::int64_t columns, std::int64_t rows);
    /// Moves the block's right and bottom edges, as far as the grid reaches and down to one cell.
    bool extendBlock(std::int64_t columns, std::int64_t rows);

private:
    bool replaceBlock(const WindowGridSelection& block);

    WindowGridSelection selection_;
    /// Where the press began that goes on; none while none does.
    std::optional<Cell> dragAnchor_;
};

} // namespace brisk
