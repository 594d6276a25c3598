#pragma once

#include "layouts/custom_layout.h"
#include "layouts/window_layout.h"

#include <string>

namespace brisk {

/// Names a command that can hold a shortcut, in settings, hot keys and menus: "window.leftHalf", "window.custom." + id.
/// Compared as a whole, never parsed.
using CommandIdentifier = std::string;

CommandIdentifier commandIdentifier(WindowLayout layout);
CommandIdentifier commandIdentifier(const CustomWindowLayout& layout);

} // namespace brisk
