#include "drag/drag_target.h"

namespace brisk {

CommandIdentifier commandIdentifier(const WindowDragTarget& target) {
    return std::visit([](const auto& layout) { return commandIdentifier(layout); }, target);
}

std::vector<WindowDragTarget> dragTargets(std::span<const WindowLayout> builtIn,
                                          std::span<const CustomWindowLayout> custom) {
    std::vector<WindowDragTarget> targets;
    targets.reserve(builtIn.size() + custom.size());
    for (const WindowLayout layout : builtIn) {
        if (canBeDropZone(layout)) {
            targets.emplace_back(layout);
        }
    }
    for (const CustomWindowLayout& layout : custom) {
        if (layout.isAvailableForDragging) {
            targets.emplace_back(layout);
        }
    }
    return targets;
}

} // namespace brisk
