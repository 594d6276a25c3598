#pragma once

#include <cstdint>
#include <string>
#include <tuple>

namespace brisk {

/// A shortcut as it is stored: a key by its position, modifiers, and the text shown for them.
struct HotKeyBinding {
    /// Virtual key code (Carbon `kVK_...`), as key events report it.
    std::uint32_t keyCode = 0;
    /// Carbon modifier mask (`cmdKey`, `shiftKey`, `optionKey`, `controlKey`).
    std::uint32_t modifiers = 0;
    /// For example "⌃⌥◀". Written when the shortcut was recorded, so it shows the characters of the keyboard layout
    /// then.
    std::string display;

    friend bool operator==(const HotKeyBinding&, const HotKeyBinding&) = default;
    /// Some order, for sorted containers.
    friend bool operator<(const HotKeyBinding& a, const HotKeyBinding& b) {
        return std::tie(a.keyCode, a.modifiers, a.display) < std::tie(b.keyCode, b.modifiers, b.display);
    }
};

/// Whether two bindings are the same shortcut: same key, same modifiers, whatever their texts.
inline bool isSameShortcut(const HotKeyBinding& a, const HotKeyBinding& b) {
    return a.keyCode == b.keyCode && a.modifiers == b.modifiers;
}

} // namespace brisk
