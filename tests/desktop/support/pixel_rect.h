#pragma once

#include <ostream>

namespace brisk::desktop {

/// A rectangle in pixels of the root window: origin at its top left, y down. A type of the harness's own, so that what
/// is expected is not computed by what is tested.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const PixelRect& rect) {
        return stream << rect.width << 'x' << rect.height << '+' << rect.x << '+' << rect.y;
    }
};

struct PixelSize {
    int width = 0;
    int height = 0;
    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// Widths along the four edges of a window: its decorations, or the shadow it draws itself.
struct PixelExtents {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
    friend bool operator==(const PixelExtents&, const PixelExtents&) = default;
};

} // namespace brisk::desktop
