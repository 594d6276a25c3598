#include "hotkeys/binding_from_key.h"

#include "hotkeys/modifier_table.h"
#include "hotkeys/virtual_keys.h"
#include "text/unicode_text.h"

namespace brisk {

std::optional<HotKeyBinding> bindingFromKeyEvent(const KeyEvent& event) {
    HotKeyBinding binding{.keyCode = event.keyCode};
    for (const Modifier& modifier : modifierTable) {
        if ((event.modifierFlags & modifier.flag) != 0) {
            binding.modifiers |= modifier.carbonMask;
            binding.display += modifier.symbol;
        }
    }
    if ((binding.modifiers & (controlKey | optionKey | cmdKey)) == 0) {
        return std::nullopt;
    }
    const auto name = keyName(binding.keyCode, event.charactersIgnoringModifiers);
    if (!name) {
        return std::nullopt;
    }
    binding.display += *name;
    return binding;
}

std::optional<std::string> keyName(std::uint32_t keyCode, const std::optional<std::string>& characters) {
    switch (keyCode) {
    case kVK_Return:
    case kVK_ANSI_KeypadEnter:
        return "↵";
    case kVK_Space:
        return "Space";
    case kVK_Delete:
        return "⌫";
    case kVK_Escape:
        return std::nullopt;
    case kVK_LeftArrow:
        return "◀";
    case kVK_RightArrow:
        return "▶";
    case kVK_DownArrow:
        return "▼";
    case kVK_UpArrow:
        return "▲";
    default:
        break;
    }
    std::string name = uppercased(trimmed(characters.value_or("")));
    return name.empty() ? std::nullopt : std::optional(std::move(name));
}

} // namespace brisk
