#pragma once

#include "drag/drag_target.h"
#include "geometry/rectangle.h"
#include "geometry/screen_info.h"

#include <optional>
#include <span>
#include <vector>

namespace brisk {

/// A place on the display where a dragged window can be dropped.
struct WindowDragZone {
    WindowDragTarget target;
    /// In AppKit coordinates; exactly the frame that the target gives the window on the display under the pointer.
    CGRect frame;
    friend bool operator==(const WindowDragZone&, const WindowDragZone&) = default;
};

/// Width × height of the zone's frame.
double zoneArea(const WindowDragZone& zone);

/// The display that contains the point, else the nearest one, the earlier of equals; none only for an empty list. Drop
/// zones follow the pointer, so this is not the rule that finds a window's display. AppKit coordinates.
std::optional<ScreenInfo> screenContainingPoint(CGPoint point, std::span<const ScreenInfo> screens);

/// One zone per target, in the same order: what each would do now to a window at `currentFrame` on a display whose
/// usable area is `visibleFrame` (AppKit coordinates, gap in points).
std::vector<WindowDragZone> buildZones(std::span<const WindowDragTarget> targets, const CGRect& visibleFrame,
                                       double gap, const CGRect& currentFrame);

/// The target of the smallest zone that contains the point, since zones nest; the earlier of equals; none outside all.
std::optional<WindowDragTarget> targetAtPoint(std::span<const WindowDragZone> zones, CGPoint point);

/// A region around a point of the display with that `screenFrame` (AppKit coordinates) that lies within the display and
/// across no edge of a zone, so that all its points have the same target; no further than `reach` points from the
/// point.
CGRect regionAroundPoint(std::span<const WindowDragZone> zones, const CGRect& screenFrame, CGPoint point, double reach);

} // namespace brisk
