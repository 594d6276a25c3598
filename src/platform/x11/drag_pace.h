#pragma once

#include "geometry/rectangle.h"

#include <chrono>
#include <optional>

namespace brisk::x11 {

/// When the pointer of a drag is looked at, and what of its motion is reported: at most once an interval, which is as
/// often as a display shows another picture, and less often as long as the pointer is where its motion changes nothing.
/// Told the time, so that it needs no clock. Coordinates are the caller's.
class DragPace {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds interval{8};

    /// The drag is reported now. Any motion matters then, until told otherwise.
    void report(Clock::time_point now, CGPoint pointer);
    void ignoreMotionWithin(const CGRect& region) { ignoredRegion_ = region; }
    /// That is where a look has shown the pointer.
    void look(Clock::time_point now, CGPoint pointer);

    /// The earliest time of the next report.
    Clock::time_point nextReport() const { return lastReport_ + interval; }
    /// Whether the last look has shown what is to be reported.
    bool isReportDue() const;
    /// Whether two looks running have shown nothing new.
    bool isAtRest() const { return looksAtRest_ >= 2; }
    /// How long the next look may wait: until a pointer that moves on at up to twice its velocity could have left the
    /// region. None where motion matters nowhere.
    std::optional<std::chrono::milliseconds> timeToNextLook() const;

private:
    void see(Clock::time_point now, CGPoint pointer);

    Clock::time_point lastReport_;
    std::optional<CGRect> ignoredRegion_;
    /// When and where the pointer was seen last.
    Clock::time_point lastSight_;
    std::optional<CGPoint> pointer_;
    /// Points in a millisecond; none of a pointer that has stood.
    std::optional<CGPoint> velocity_;
    int looksAtRest_ = 0;
};

} // namespace brisk::x11
