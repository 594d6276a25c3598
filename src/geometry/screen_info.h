#pragma once

#include "geometry/rectangle.h"

namespace brisk {

/// What the logic needs to know of one display, in AppKit coordinates. A display list is ordered as the platform gives
/// it, the primary display first; its frame's origin is (0, 0) by the definition of that space.
struct ScreenInfo {
    /// The whole display.
    CGRect frame;
    /// The usable area: the display without menu bar, Dock and panels.
    CGRect visibleFrame;
    friend bool operator==(const ScreenInfo&, const ScreenInfo&) = default;
};

} // namespace brisk
