#pragma once

#include "geometry/rectangle.h"
#include "geometry/screen_info.h"
#include "platform/accessibility_platform.h"

#include <functional>
#include <optional>
#include <span>

namespace brisk {

/// The identity of one window, fit to be a dictionary key. Keeps its element alive.
struct AccessibilityWindowID {
    AXUIElementRef element;
    friend bool operator==(const AccessibilityWindowID& a, const AccessibilityWindowID& b) {
        return CFEqual(a.element, b.element);
    }
};

/// The rules by which other applications' windows are read and written. Main thread only, no state of its own. Nothing
/// is reported: every failure of the platform becomes an absent result or false.
class WindowAccessibility {
public:
    explicit WindowAccessibility(AccessibilityPlatform& platform) : platform_(platform) {}

    /// The application's focused window, else the first of its windows.
    std::optional<AXUIElementRef> focusedWindow(const AXUIElementRef& application) const;

    /// The window's frame in accessibility coordinates, as the platform gives it.
    std::optional<CGRect> readFrame(const AXUIElementRef& window) const;

    /// Asks the window to take a frame in accessibility coordinates, position first; the size is asked for even where
    /// the position was refused. True if both were accepted; reading the frame back tells what the window made of it.
    bool writeFrame(const AXUIElementRef& window, const CGRect& frame) const;

    /// True only if the platform knows that the window no longer exists.
    bool isInvalid(const AXUIElementRef& window) const;

private:
    AccessibilityPlatform& platform_;
};

/// Conversions between the two spaces, each the other's inverse; the primary display's frame (AppKit coordinates)
/// serves for every window, whichever display it is on.
CGRect toAppKitFrame(const CGRect& accessibilityFrame, const CGRect& primaryFrame);
CGRect toAccessibilityFrame(const CGRect& appKitFrame, const CGRect& primaryFrame);

/// The display a window frame (AppKit coordinates) is on: the first that contains its centre, else the one it overlaps
/// most, the earlier of equals; none only for an empty list.
std::optional<ScreenInfo> screenContaining(const CGRect& frame, std::span<const ScreenInfo> screens);

} // namespace brisk

template <>
struct std::hash<brisk::AccessibilityWindowID> {
    std::size_t operator()(const brisk::AccessibilityWindowID& id) const noexcept { return brisk::CFHash(id.element); }
};
