#include "hotkeys/menu_key_equivalent.h"

#include "hotkeys/modifier_table.h"
#include "hotkeys/virtual_keys.h"
#include "text/unicode_text.h"

#include <algorithm>
#include <string_view>

namespace brisk {

namespace {

std::string_view withoutLeadingModifiers(std::string_view display) {
    for (;;) {
        const auto* const leading =
            std::ranges::find_if(modifierTable, [&](const Modifier& m) { return display.starts_with(m.symbol); });
        if (leading == modifierTable.end()) {
            return display;
        }
        display.remove_prefix(leading->symbol.size());
    }
}

} // namespace

std::optional<std::string> menuKeyEquivalent(const HotKeyBinding& binding) {
    switch (binding.keyCode) {
    case kVK_LeftArrow:
        return NSLeftArrowFunctionKey;
    case kVK_RightArrow:
        return NSRightArrowFunctionKey;
    case kVK_DownArrow:
        return NSDownArrowFunctionKey;
    case kVK_UpArrow:
        return NSUpArrowFunctionKey;
    case kVK_Delete:
        return "\b";
    case kVK_ANSI_KeypadEnter:
        return "\x03";
    case kVK_Return:
        return "\r";
    case kVK_Space:
        return " ";
    default:
        break;
    }
    std::string key = lowercased(withoutLeadingModifiers(binding.display));
    return key.empty() ? std::nullopt : std::optional(std::move(key));
}

NSEventModifierFlags menuModifierMask(std::uint32_t carbonModifiers) {
    NSEventModifierFlags flags = 0;
    for (const Modifier& modifier : modifierTable) {
        if ((carbonModifiers & modifier.carbonMask) != 0) {
            flags |= modifier.flag;
        }
    }
    return flags;
}

} // namespace brisk
