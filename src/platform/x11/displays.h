#pragma once

#include "geometry/rectangle.h"
#include "geometry/screen_info.h"
#include "platform/x11/connection.h"
#include "platform/x11/pixel_rect.h"
#include "platform/x11/window_tracker.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace brisk::x11 {

/// The monitors and the usable area of each, and the translation between the root window's pixels and the coordinate
/// spaces of the rest of the program: one point is one pixel, the origin is the primary monitor's. A copy is kept and
/// renewed after the server has said that something changed. Expects the root window to be followed.
class Displays {
public:
    Displays(Connection& connection, WindowTracker& tracker);
    Displays(const Displays&) = delete;
    Displays& operator=(const Displays&) = delete;
    ~Displays() = default;

    /// Whether the event tells that the displays may have changed.
    bool isChange(const xcb_generic_event_t& event) const;

    /// In AppKit coordinates, primary display first.
    const std::vector<ScreenInfo>& screens();

    /// Top left corner of the primary monitor in the root window: what lies between its coordinates and accessibility
    /// coordinates.
    CGPoint accessibilityOrigin();
    /// A point of the root window in AppKit coordinates.
    CGPoint toAppKit(CGPoint rootPoint);

private:
    void update();
    void readMonitors();

    Connection& connection_;
    WindowTracker& tracker_;
    std::uint8_t firstRandREvent_ = 0;
    bool hasMonitors_ = false;
    bool areMonitorsStale_ = true;
    PixelRect root_;
    /// Primary first; never empty.
    std::vector<PixelRect> monitors_;
    std::uint64_t strutGeneration_ = 0;
    std::vector<ScreenInfo> screens_;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
