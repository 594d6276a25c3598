#include "platform/x11/modifier_map.h"

#include "platform/hot_key_service.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <span>

namespace brisk::x11 {
namespace {

constexpr std::uint16_t allModifiers = 0xFF;

} // namespace

std::optional<std::uint16_t> ModifierMap::maskOf(std::uint32_t carbonModifiers) const {
    struct Meaning {
        std::uint32_t carbon;
        std::uint16_t bit;
    };
    std::uint16_t mask = 0;
    for (const Meaning& meaning : {
             Meaning{shiftKey, XCB_MOD_MASK_SHIFT},
             Meaning{controlKey, XCB_MOD_MASK_CONTROL},
             Meaning{optionKey, option},
             Meaning{cmdKey, command},
         }) {
        if ((carbonModifiers & meaning.carbon) == 0) {
            continue;
        }
        if (meaning.bit == 0) {
            return std::nullopt;
        }
        mask = static_cast<std::uint16_t>(mask | meaning.bit);
        carbonModifiers &= ~meaning.carbon;
    }
    return carbonModifiers == 0 ? std::optional{mask} : std::nullopt;
}

std::array<std::uint16_t, 4> ModifierMap::lockVariants() const {
    constexpr std::uint16_t capsLock = XCB_MOD_MASK_LOCK;
    return {0, capsLock, numLock, static_cast<std::uint16_t>(capsLock | numLock)};
}

std::uint16_t ModifierMap::withoutLocks(std::uint16_t state) const {
    return static_cast<std::uint16_t>(state & allModifiers & ~(XCB_MOD_MASK_LOCK | numLock));
}

std::optional<ModifierMap> readModifierMap(const Connection& connection) {
    const xcb_setup_t& setup = *xcb_get_setup(connection.xcb());
    const auto modifierCookie = xcb_get_modifier_mapping(connection.xcb());
    const auto keyboardCookie = xcb_get_keyboard_mapping(
        connection.xcb(), setup.min_keycode, static_cast<std::uint8_t>(setup.max_keycode - setup.min_keycode + 1));
    const Reply<xcb_get_modifier_mapping_reply_t> modifiers{
        xcb_get_modifier_mapping_reply(connection.xcb(), modifierCookie, nullptr)};
    const Reply<xcb_get_keyboard_mapping_reply_t> keyboard{
        xcb_get_keyboard_mapping_reply(connection.xcb(), keyboardCookie, nullptr)};
    if (!modifiers || !keyboard) {
        return std::nullopt;
    }

    const std::span keySyms{xcb_get_keyboard_mapping_keysyms(keyboard.get()),
                            static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(keyboard.get()))};
    const auto gives = [&](xcb_keycode_t keyCode, xcb_keysym_t keySym) {
        const std::size_t first = static_cast<std::size_t>(keyCode - setup.min_keycode) * keyboard->keysyms_per_keycode;
        // Unused places of the modifier map hold key code 0.
        return keyCode >= setup.min_keycode && first + keyboard->keysyms_per_keycode <= keySyms.size() &&
               std::ranges::count(keySyms.subspan(first, keyboard->keysyms_per_keycode), keySym) > 0;
    };
    const std::span keyCodes{xcb_get_modifier_mapping_keycodes(modifiers.get()),
                             static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(modifiers.get()))};
    const auto bitOf = [&](std::initializer_list<xcb_keysym_t> wanted) {
        for (unsigned modifier = XCB_MAP_INDEX_1; modifier <= XCB_MAP_INDEX_5; ++modifier) {
            for (const xcb_keycode_t keyCode : keyCodes.subspan(
                     std::size_t{modifier} * modifiers->keycodes_per_modifier, modifiers->keycodes_per_modifier)) {
                if (std::ranges::any_of(wanted, [&](xcb_keysym_t keySym) { return gives(keyCode, keySym); })) {
                    return static_cast<std::uint16_t>(1U << modifier);
                }
            }
        }
        return std::uint16_t{0};
    };
    return ModifierMap{
        .numLock = bitOf({XKB_KEY_Num_Lock}),
        .option = bitOf({XKB_KEY_Alt_L, XKB_KEY_Alt_R}),
        .command = bitOf({XKB_KEY_Super_L, XKB_KEY_Super_R}),
    };
}

} // namespace brisk::x11
