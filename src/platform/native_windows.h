#pragma once

#include "geometry/rectangle.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace brisk {

/// A window of this program as the window system knows it: the id that the toolkit gives for it.
enum class NativeWindowID : std::uint64_t {};

/// Windows of our own that a toolkit cannot place well: those which the desktop's window manager leaves alone. A window
/// that is gone is ignored by every operation. Main thread only.
class NativeWindows {
public:
    virtual ~NativeWindows() = default;

    /// Gives the window exactly that frame, in AppKit coordinates, whatever scale factor the toolkit works with. The
    /// toolkit hears of it as of any change from outside.
    virtual void setFrame(NativeWindowID window, const CGRect& frame) = 0;

    /// Puts the window above all others, those in full screen included, without making it active.
    virtual void orderFrontRegardless(NativeWindowID window) = 0;

    /// Cuts the window to these rectangles (points, origin at the window's top left, y down), or makes it whole again.
    virtual void setShape(NativeWindowID window, const std::optional<std::vector<CGRect>>& shape) = 0;

    /// Whether translucent windows show what is below them. Without a compositor they are opaque.
    virtual bool isCompositingActive() = 0;

    /// Calls `handler` after the answer has changed; one handler, an empty one takes it away. It may be called while
    /// another call of the platform is under way: it schedules, it does not act.
    virtual void setCompositingChangedHandler(std::function<void()> handler) = 0;
};

} // namespace brisk
