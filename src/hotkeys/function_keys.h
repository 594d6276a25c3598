#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brisk {

/// The private-use character (U+F700 and up, UTF-8) that a key without a character of its own types: arrows, F1 to F20,
/// Home, Page Up and the like. None for other keys.
std::optional<std::string_view> functionKeyCharacter(std::uint32_t virtualKeyCode);

/// A shortcut's text as people can read it: a function key's private-use character, for which no font has a picture,
/// becomes what is printed on the key ("⌃⌥F5"). What is stored stays as it is.
std::string legibleDisplay(std::string_view display);

} // namespace brisk
