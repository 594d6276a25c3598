#pragma once

#include "desktop/support/virtual_server.h"

namespace brisk::desktop {

/// The server on which this program's own windows are: two monitors, the primary one at the right, and lower.
VirtualServer& virtualScreen();

inline constexpr PixelRect leftMonitor{.x = 0, .y = 0, .width = 800, .height = 600};
inline constexpr PixelRect primaryMonitor{.x = 800, .y = 100, .width = 1000, .height = 700};

} // namespace brisk::desktop
