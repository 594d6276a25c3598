#pragma once

#include "platform/modifier_flags.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brisk {

/// A key going down, as the logic sees it on every platform.
struct KeyEvent {
    NSEventModifierFlags modifierFlags = 0;
    /// Virtual key code (Carbon `kVK_...`): the key's position, whatever the keyboard layout.
    std::uint16_t keyCode = 0;
    /// What the key types without Control, Option and Command (Shift still applies), UTF-8; a function key types a
    /// private-use character (U+F700 and up). None for a key that types nothing.
    std::optional<std::string> charactersIgnoringModifiers;
};

} // namespace brisk
