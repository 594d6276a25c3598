#pragma once

#include "geometry/rectangle.h"
#include "geometry/screen_info.h"

#include <ostream>

namespace brisk {

// How a failed expectation shows geometry.
inline void PrintTo(const CGPoint& point, std::ostream* out) {
    *out << '(' << point.x << ", " << point.y << ')';
}
inline void PrintTo(const CGSize& size, std::ostream* out) {
    *out << size.width << " x " << size.height;
}
inline void PrintTo(const CGRect& rect, std::ostream* out) {
    *out << '(' << rect.minX() << ", " << rect.minY() << ", " << rect.width() << ", " << rect.height() << ')';
}
inline void PrintTo(const ScreenInfo& screen, std::ostream* out) {
    PrintTo(screen.frame, out);
    *out << " usable ";
    PrintTo(screen.visibleFrame, out);
}

} // namespace brisk
