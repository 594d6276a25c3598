#include "drag/zone_picture.h"

#include <algorithm>

namespace brisk {

namespace {

struct Label {
    std::string operator()(WindowLayout layout) const { return "Built-in · " + std::string(title(layout)); }
    std::string operator()(const CustomWindowLayout& layout) const { return "Custom · " + layout.name; }
};

/// A display too small for the gap gives zones of negative size, which cover nothing.
double coveredArea(const ZonePicture& picture) {
    return std::max(picture.frame.width(), 0.0) * std::max(picture.frame.height(), 0.0);
}

} // namespace

std::vector<ZonePicture> zonePictures(std::span<const WindowDragZone> zones,
                                      const std::optional<CommandIdentifier>& active, CGPoint screenOrigin) {
    std::vector<ZonePicture> pictures;
    pictures.reserve(zones.size());
    for (const WindowDragZone& zone : zones) {
        CGRect frame = zone.frame;
        frame.origin.x -= screenOrigin.x;
        frame.origin.y -= screenOrigin.y;
        pictures.push_back({
            .frame = frame,
            .kind = std::holds_alternative<CustomWindowLayout>(zone.target) ? ZoneKind::custom : ZoneKind::builtIn,
            .isActive = active && *active == commandIdentifier(zone.target),
            .label = std::visit(Label{}, zone.target),
        });
    }
    std::ranges::stable_sort(pictures, std::ranges::greater{}, coveredArea);
    return pictures;
}

} // namespace brisk
