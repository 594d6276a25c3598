#pragma once

#include "hotkeys/hot_key_binding.h"
#include "platform/key_event.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brisk {

/// The shortcut that a key press stands for; none unless Control, Option or Command is held and the key has a name.
std::optional<HotKeyBinding> bindingFromKeyEvent(const KeyEvent& event);

/// How a key is written in a shortcut: a symbol or word for the keys that type nothing visible, else what it types, in
/// capitals. None for Escape, which gives up, and for keys that type nothing.
std::optional<std::string> keyName(std::uint32_t keyCode, const std::optional<std::string>& characters);

} // namespace brisk
