#pragma once

namespace brisk::x11 {

/// A rectangle in whole pixels of the root window, y down, as the server and the window manager speak of places.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    constexpr int maxX() const { return x + width; }
    constexpr int maxY() const { return y + height; }
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

} // namespace brisk::x11
