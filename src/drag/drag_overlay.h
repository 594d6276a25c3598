#pragma once

#include "drag/drag_zone.h"

#include <optional>
#include <vector>

namespace brisk {

/// The picture of the drop zones over one display. Main thread only.
class WindowDragOverlay {
public:
    virtual ~WindowDragOverlay() = default;
    /// Shows exactly these zones on that display, the one with the active identifier highlighted. May be called again
    /// while shown; takes neither focus nor clicks.
    virtual void show(const std::vector<WindowDragZone>& zones, const std::optional<CommandIdentifier>& active,
                      const ScreenInfo& screen) = 0;
    virtual void hide() = 0;
};

} // namespace brisk
