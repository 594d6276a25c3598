#include "drag/drag_zone.h"

#include <algorithm>
#include <cmath>

namespace brisk {

namespace {

double distance(CGPoint point, const CGRect& frame) {
    const double dx = std::max({frame.minX() - point.x, point.x - frame.maxX(), 0.0});
    const double dy = std::max({frame.minY() - point.y, point.y - frame.maxY(), 0.0});
    return std::hypot(dx, dy);
}

/// What is left of a range around `position` when it is cut at `edge`, which belongs to the upper part.
struct Range {
    double minimum;
    double maximum;
    void cut(double edge, double position) {
        if (edge <= position) {
            minimum = std::max(minimum, edge);
        } else {
            maximum = std::min(maximum, edge);
        }
    }
};

struct TargetFrame {
    const CGRect& visibleFrame;
    const CGRect& currentFrame;
    double gap;

    CGRect operator()(WindowLayout layout) const { return layoutFrame(layout, visibleFrame, currentFrame, gap); }
    CGRect operator()(const CustomWindowLayout& layout) const { return gridFrame(layout.selection, visibleFrame, gap); }
};

} // namespace

double zoneArea(const WindowDragZone& zone) {
    return zone.frame.width() * zone.frame.height();
}

std::optional<ScreenInfo> screenContainingPoint(CGPoint point, std::span<const ScreenInfo> screens) {
    const auto containing = std::ranges::find_if(screens, [&](const ScreenInfo& s) { return s.frame.contains(point); });
    if (containing != screens.end()) {
        return *containing;
    }
    const auto nearest =
        std::ranges::min_element(screens, {}, [&](const ScreenInfo& screen) { return distance(point, screen.frame); });
    return nearest == screens.end() ? std::nullopt : std::optional(*nearest);
}

std::vector<WindowDragZone> buildZones(std::span<const WindowDragTarget> targets, const CGRect& visibleFrame,
                                       double gap, const CGRect& currentFrame) {
    const TargetFrame frame{.visibleFrame = visibleFrame, .currentFrame = currentFrame, .gap = gap};
    std::vector<WindowDragZone> zones;
    zones.reserve(targets.size());
    for (const WindowDragTarget& target : targets) {
        zones.push_back({.target = target, .frame = std::visit(frame, target)});
    }
    return zones;
}

std::optional<WindowDragTarget> targetAtPoint(std::span<const WindowDragZone> zones, CGPoint point) {
    const WindowDragZone* chosen = nullptr;
    for (const WindowDragZone& zone : zones) {
        if (zone.frame.contains(point) && (chosen == nullptr || zoneArea(zone) < zoneArea(*chosen))) {
            chosen = &zone;
        }
    }
    return chosen == nullptr ? std::nullopt : std::optional(chosen->target);
}

CGRect regionAroundPoint(std::span<const WindowDragZone> zones, const CGRect& screenFrame, CGPoint point,
                         double reach) {
    Range x{.minimum = point.x - reach, .maximum = point.x + reach};
    Range y{.minimum = point.y - reach, .maximum = point.y + reach};
    const auto cut = [&](const CGRect& frame) {
        x.cut(frame.minX(), point.x);
        x.cut(frame.maxX(), point.x);
        y.cut(frame.minY(), point.y);
        y.cut(frame.maxY(), point.y);
    };
    cut(screenFrame);
    for (const WindowDragZone& zone : zones) {
        cut(zone.frame);
    }
    return {.origin = {.x = x.minimum, .y = y.minimum},
            .size = {.width = x.maximum - x.minimum, .height = y.maximum - y.minimum}};
}

} // namespace brisk
