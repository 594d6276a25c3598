#pragma once

#include "platform/x11/pixel_rect.h"

#include <array>
#include <cstdint>

namespace brisk::x11 {

/// Space that a window, a panel mostly, keeps for itself along edges of the root window, in the order of
/// _NET_WM_STRUT_PARTIAL: depth at left, right, top and bottom, then first and last pixel along each of these edges.
/// The numbers are the client's: any of them may be nonsense.
using Strut = std::array<std::uint32_t, 12>;

/// The part of `area`, a monitor or what others left of it, that stays usable beside the strut. A strut that would
/// leave nothing does not mean this monitor, it lies beyond it or is broken, and is ignored.
PixelRect areaBeside(const Strut& strut, PixelRect area, PixelRect root);

} // namespace brisk::x11
