#pragma once

#include "geometry/rectangle.h"

#include <cstdint>
#include <string>

namespace brisk {

/// A rectangular block of cells in a grid laid over a display's usable area; row 0 is the top row, column 0 the left
/// column. The fields hold whatever they were given; every consumer works on `normalized` values.
struct WindowGridSelection {
    static constexpr std::int64_t maximumGridDimension = 6;

    std::int64_t columns = 1;
    std::int64_t rows = 1;
    std::int64_t column = 0;
    std::int64_t row = 0;
    std::int64_t columnSpan = 1;
    std::int64_t rowSpan = 1;

    friend bool operator==(const WindowGridSelection&, const WindowGridSelection&) = default;
};

/// The widest gap, in points, between windows and at display edges.
inline constexpr double maximumGap = 64.0;

/// The selection with a grid of 1 to 6 columns and rows, and its block of at least one cell inside that grid.
WindowGridSelection normalized(const WindowGridSelection& selection);

/// The frame of the selected block in `visibleFrame` (both in AppKit coordinates, points, nothing rounded). The gap
/// lies once along each edge of the area and once between neighbouring cells; a block spans the gaps inside it. The gap
/// is cut to 0...`maximumGap` and to what leaves each cell one point, so a tiny area never yields a negative size.
CGRect gridFrame(const WindowGridSelection& selection, const CGRect& visibleFrame, double gap);

/// The normalised selection in words, for example "2×1 area on a 3×2 grid".
std::string areaDescription(const WindowGridSelection& selection);

} // namespace brisk
