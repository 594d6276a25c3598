#pragma once

#include <cstdint>
#include <optional>

namespace brisk::x11 {

/// The X key code of the key that a virtual key code names, none where no key of an X keyboard has that place. Both
/// kinds of code mean a position on the keyboard and never a character, so no layout changes the answer.
std::optional<std::uint8_t> xKeyCodeOf(std::uint32_t virtualKeyCode);

/// The way back.
std::optional<std::uint32_t> virtualKeyCodeOf(std::uint8_t xKeyCode);

} // namespace brisk::x11
