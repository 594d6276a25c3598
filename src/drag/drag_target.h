#pragma once

#include "hotkeys/command_catalogue.h"
#include "layouts/custom_layout.h"
#include "layouts/window_layout.h"

#include <span>
#include <variant>
#include <vector>

namespace brisk {

/// What is applied to a window: a built-in layout, or a copy of a custom one. Two targets are the same exactly when
/// their command identifiers are equal.
using WindowDragTarget = std::variant<WindowLayout, CustomWindowLayout>;

CommandIdentifier commandIdentifier(const WindowDragTarget& target);

/// The layouts that a drag offers: of the built-in ones, in the order given, those that can be drop zones; then those
/// custom ones, in the order given, that are available for dragging.
std::vector<WindowDragTarget> dragTargets(std::span<const WindowLayout> builtIn,
                                          std::span<const CustomWindowLayout> custom);

} // namespace brisk
