#pragma once

#include "hotkeys/hot_key_binding.h"
#include "platform/modifier_flags.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brisk {

/// The characters AppKit's menus use for keys that type none (`NSLeftArrowFunctionKey` and so on), UTF-8.
inline constexpr const char* NSUpArrowFunctionKey = "\uF700";
inline constexpr const char* NSDownArrowFunctionKey = "\uF701";
inline constexpr const char* NSLeftArrowFunctionKey = "\uF702";
inline constexpr const char* NSRightArrowFunctionKey = "\uF703";

/// The text that shows a shortcut's key in a menu item; none when the shortcut names no key. Without modifiers: those
/// are `menuModifierMask`.
std::optional<std::string> menuKeyEquivalent(const HotKeyBinding& binding);

/// A Carbon modifier mask as AppKit modifier flags; other bits are ignored.
NSEventModifierFlags menuModifierMask(std::uint32_t carbonModifiers);

} // namespace brisk
