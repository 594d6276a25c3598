#include "platform/x11/drag_pace.h"

#include <algorithm>

namespace brisk::x11 {
namespace {

using std::chrono::milliseconds;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// What else shows in a report but makes none, such as the window's size, is seen this much later at most.
constexpr milliseconds longestStay{32};
/// A pointer that was reported longer ago than that may have stood since, and gone its way in a moment.
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
    velocity_.reset();
    if (const Milliseconds passed = now - lastReport_; pointer_ && !isAt(pointer) && passed <= longestMotion) {
        const double time = std::max(passed.count(), 1.0);
        velocity_ = {.x = (pointer.x - pointer_->x) / time, .y = (pointer.y - pointer_->y) / time};
    }
    pointer_ = pointer;
    lastReport_ = now;
}

DragPace::Clock::time_point DragPace::endOfStayIn(const CGRect& region) const {
    if (!velocity_) {
        return lastReport_;
    }
    const Milliseconds stay =
        std::min({stayIn(region.minX(), region.maxX(), pointer_->x, velocity_->x),
                  stayIn(region.minY(), region.maxY(), pointer_->y, velocity_->y), Milliseconds(longestStay)});
    return lastReport_ + std::chrono::floor<milliseconds>(stay);
}

} // namespace brisk::x11
