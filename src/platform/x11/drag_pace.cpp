#include "platform/x11/drag_pace.h"

#include <algorithm>

namespace brisk::x11 {
namespace {

using std::chrono::milliseconds;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// A pointer that speeds up beyond all expectation is seen this much later at most.
constexpr milliseconds longestStay{32};
/// And what shows in a report but makes none, such as a window that came up above the zones.
constexpr milliseconds longestSilence{250};
/// A shorter time tells no velocity: a report reads the pointer just after the look that made it.
constexpr milliseconds shortestMotion{4};
/// A pointer that was seen longer ago than that may have stood since, and gone its way in a moment.
constexpr milliseconds longestMotion{48};
/// How fast, in points a millisecond, a pointer may set out from rest or turn round during a stay.
constexpr double suddenSpeed = 1;

/// How long what goes at up to twice that velocity stays in a range.
Milliseconds stayIn(double minimum, double maximum, double position, double velocity) {
    const double up = suddenSpeed + 2 * std::max(velocity, 0.0);
    const double down = suddenSpeed + 2 * std::max(-velocity, 0.0);
    return Milliseconds(std::min((maximum - position) / up, (position - minimum) / down));
}

} // namespace

void DragPace::report(Clock::time_point now, CGPoint pointer) {
    see(now, pointer);
    lastReport_ = now;
    ignoredRegion_.reset();
    looksAtRest_ = 0;
}

void DragPace::look(Clock::time_point now, CGPoint pointer) {
    looksAtRest_ = pointer_ == pointer ? looksAtRest_ + 1 : 0;
    see(now, pointer);
}

void DragPace::see(Clock::time_point now, CGPoint pointer) {
    if (const Milliseconds passed = now - lastSight_; passed >= shortestMotion) {
        velocity_.reset();
        if (pointer_ && pointer_ != pointer && passed <= longestMotion) {
            velocity_ = {.x = (pointer.x - pointer_->x) / passed.count(),
                         .y = (pointer.y - pointer_->y) / passed.count()};
        }
    }
    pointer_ = pointer;
    lastSight_ = now;
}

bool DragPace::isReportDue() const {
    return looksAtRest_ == 0 &&
           (!ignoredRegion_ || !ignoredRegion_->contains(*pointer_) || lastSight_ - lastReport_ >= longestSilence);
}

std::optional<milliseconds> DragPace::timeToNextLook() const {
    if (ignoredRegion_ == CGRectInfinite) {
        return std::nullopt;
    }
    if (!ignoredRegion_ || !velocity_) {
        return interval;
    }
    const Milliseconds stay =
        std::min(stayIn(ignoredRegion_->minX(), ignoredRegion_->maxX(), pointer_->x, velocity_->x),
                 stayIn(ignoredRegion_->minY(), ignoredRegion_->maxY(), pointer_->y, velocity_->y));
    return std::chrono::floor<milliseconds>(std::clamp<Milliseconds>(stay, interval, longestStay));
}

} // namespace brisk::x11
