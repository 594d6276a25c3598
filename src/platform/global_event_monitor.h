#pragma once

#include "geometry/rectangle.h"
#include "platform/modifier_flags.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace brisk {

/// Kinds of mouse event, with AppKit's numbers.
enum class NSEventType : std::uint8_t { leftMouseDown = 1, leftMouseUp = 2, leftMouseDragged = 6 };

/// The union of 1 << type for the events wanted.
using NSEventMask = std::uint64_t;
inline constexpr NSEventMask maskOf(NSEventType type) {
    return NSEventMask{1} << static_cast<unsigned>(type);
}

/// Mouse events that other applications receive, watched without taking them away. Main thread only.
class GlobalEventMonitor {
public:
    virtual ~GlobalEventMonitor() = default;

    using Token = std::uint64_t;
    using Handler = std::function<void(NSEventType, NSEventModifierFlags)>;

    /// Reports every event of the mask until the monitor is removed; none when the platform cannot watch the mouse.
    /// Events of this program's own windows are not reported. Reports of a drag may be thinned out, its last one and
    /// the order of press, drags and release are kept.
    virtual std::optional<Token> addGlobalMonitorForEventsMatchingMask(NSEventMask mask, Handler handler) = 0;
    virtual void removeMonitor(Token token) = 0;

    /// Says that nothing more of the press that was last reported is of interest to anybody, its release included. A
    /// mouse that moves then costs as little as with no button down.
    virtual void ignoreRestOfPress() = 0;

    /// Says, of the drag that was reported last, that motion within that region (AppKit coordinates) hardly matters to
    /// anybody: it is then reported now and then, and within `CGRectInfinite` not at all. Motion out of the region is
    /// reported, at once or, where the pointer has sped up much, a few pictures later; what else makes a report is not
    /// put off, and the last motion is not left out.
    virtual void ignoreMotionWithin(const CGRect& region) = 0;

    /// Where the pointer is now, in AppKit coordinates.
    virtual CGPoint mouseLocation() = 0;
};

} // namespace brisk
