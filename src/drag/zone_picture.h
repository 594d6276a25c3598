#pragma once

#include "drag/drag_zone.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace brisk {

/// Which of the two colours a zone has.
enum class ZoneKind { builtIn, custom };

/// What the overlay draws for one drop zone. Equal pictures look the same.
struct ZonePicture {
    /// In the overlay's coordinates: points, origin at the bottom left of the display, y up.
    CGRect frame;
    ZoneKind kind = ZoneKind::builtIn;
    bool isActive = false;
    /// Names the layout, in UTF-8.
    std::string label;
    friend bool operator==(const ZonePicture&, const ZonePicture&) = default;
};

/// The zones in the order in which they are painted: by area, largest first, so that a smaller zone lies on top of
/// those that contain it, also of the active one; zones of equal area keep their order. `screenOrigin` is the origin of
/// the covered display's frame (AppKit coordinates).
std::vector<ZonePicture> zonePictures(std::span<const WindowDragZone> zones,
                                      const std::optional<CommandIdentifier>& active, CGPoint screenOrigin);

} // namespace brisk
