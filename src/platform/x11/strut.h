#pragma once

#include "platform/x11/pixel_rect.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace brisk::x11 {

/// Space that a window, a panel mostly, keeps for itself along edges of the root window, in the order of
/// _NET_WM_STRUT_PARTIAL: depth at left, right, top and bottom, then first and last pixel along each of these edges.
/// The numbers are the client's: any of them may be nonsense.
using Strut = std::array<std::uint32_t, 12>;

/// What _NET_WM_STRUT_PARTIAL says, else _NET_WM_STRUT, whose depths hold along the whole of each edge; none where
/// neither says enough.
std::optional<Strut> strutIn(const std::optional<std::vector<std::uint32_t>>& partial,
                             const std::optional<std::vector<std::uint32_t>>& plain);

/// The part of `area`, a monitor or what others left of it, that stays usable beside the strut. A strut that would
/// leave nothing does not mean this monitor, it lies beyond it or is broken, and is ignored.
PixelRect areaBeside(const Strut& strut, PixelRect area, PixelRect root);

} // namespace brisk::x11
