#pragma once

#include "platform/hot_key_service.h"
#include "platform/modifier_flags.h"

#include <array>
#include <string_view>

namespace brisk {

/// One modifier in each of its three forms.
struct Modifier {
    NSEventModifierFlags flag;
    std::uint32_t carbonMask;
    std::string_view symbol;
};

/// In the order in which shortcuts are written.
inline constexpr std::array modifierTable{
    Modifier{NSEventModifierFlagControl, controlKey, "⌃"},
    Modifier{NSEventModifierFlagOption, optionKey, "⌥"},
    Modifier{NSEventModifierFlagShift, shiftKey, "⇧"},
    Modifier{NSEventModifierFlagCommand, cmdKey, "⌘"},
};

} // namespace brisk
