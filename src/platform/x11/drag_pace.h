#pragma once

#include "geometry/rectangle.h"

#include <chrono>
#include <optional>

namespace brisk::x11 {

/// When a drag is to be reported next: at most once an interval, which is as often as a display shows another picture,
/// and less often as long as the pointer can hardly have left the region in which its motion changes nothing. Told the
/// time, so that it needs no clock. Coordinates are the caller's.
class DragPace {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds interval{8};

    /// The drag is reported now.
    void report(Clock::time_point now, CGPoint pointer);
    /// Whether the pointer is where it was reported last.
    bool isAt(CGPoint pointer) const { return pointer_ == pointer; }
    /// The earliest time of the next report.
    Clock::time_point nextReport() const { return lastReport_ + interval; }

    /// Until when, at least, a pointer that moves on at up to twice its velocity is in the region that it was reported
    /// in last; the time of that report if nothing is known of its velocity.
    Clock::time_point endOfStayIn(const CGRect& region) const;

private:
    Clock::time_point lastReport_;
    std::optional<CGPoint> pointer_;
    /// Points in a millisecond; none of a pointer that has stood.
    std::optional<CGPoint> velocity_;
};

} // namespace brisk::x11
