#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace brisk {

/// A point in points (double precision). The space is the caller's, as for CGRect.
struct CGPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

/// A width and a height in points.
struct CGSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const CGSize&, const CGSize&) = default;
};

/// A rectangle in points (double precision). The space is the caller's: AppKit coordinates (origin at the bottom left
/// of the primary display, y up) in layouts and drag zones, accessibility coordinates (origin at its top left, y down)
/// in window frames and restore history. A function that takes one says which.
struct CGRect {
    CGPoint origin;
    CGSize size;

    constexpr double minX() const { return origin.x; }
    constexpr double minY() const { return origin.y; }
    constexpr double maxX() const { return origin.x + size.width; }
    constexpr double maxY() const { return origin.y + size.height; }
    constexpr double midX() const { return origin.x + size.width * 0.5; }
    constexpr double midY() const { return origin.y + size.height * 0.5; }
    constexpr double width() const { return size.width; }
    constexpr double height() const { return size.height; }

    /// Half open: a point on the maximum edges is outside, so neighbours never both contain it.
    constexpr bool contains(CGPoint p) const { return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY(); }

    friend bool operator==(const CGRect&, const CGRect&) = default;
};

/// The whole plane.
inline constexpr CGRect CGRectInfinite{
    .origin = {.x = -std::numeric_limits<double>::max() / 2, .y = -std::numeric_limits<double>::max() / 2},
    .size = {.width = std::numeric_limits<double>::max(), .height = std::numeric_limits<double>::max()}};

/// Area shared by two rectangles of one space; 0 where they only touch or do not meet.
constexpr double intersectionArea(const CGRect& a, const CGRect& b) {
    const double width = std::min(a.maxX(), b.maxX()) - std::max(a.minX(), b.minX());
    const double height = std::min(a.maxY(), b.maxY()) - std::max(a.minY(), b.minY());
    return std::max(width, 0.0) * std::max(height, 0.0);
}

/// Whether x, y, width and height of two rectangles of one space each differ by at most `tolerance` points.
inline bool isNear(const CGRect& a, const CGRect& b, double tolerance) {
    return std::abs(a.minX() - b.minX()) <= tolerance && std::abs(a.minY() - b.minY()) <= tolerance &&
           std::abs(a.width() - b.width()) <= tolerance && std::abs(a.height() - b.height()) <= tolerance;
}

} // namespace brisk
