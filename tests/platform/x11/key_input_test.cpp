#include "platform/x11/key_input.h"

#include "hotkeys/binding_from_key.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace brisk::x11 {
namespace {

constexpr std::uint32_t shiftBit = 1;
constexpr std::uint32_t capsLockBit = 2;
constexpr std::uint32_t controlBit = 4;
constexpr std::uint32_t altBit = 8;
constexpr std::uint32_t numLockBit = 16;
constexpr std::uint32_t superBit = 64;
constexpr std::uint32_t level3Bit = 128;
constexpr std::uint32_t secondGroup = 1U << 13U;
constexpr ModifierMap modifierMap{.numLock = numLockBit, .option = altBit, .command = superBit};

Keymap keymap(const char* layouts, const char* options = "") {
    xkb_context* const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    const xkb_rule_names names{
        .rules = "evdev", .model = "pc105", .layout = layouts, .variant = "", .options = options};
    Keymap result{xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS)};
    xkb_context_unref(context);
    return result;
}

TEST(KeyInput, KeysAreByPositionAndCharactersByLayout) {
    struct Row {
        const char* why;
        const char* layouts;
        NativeKeyPress press;
        std::uint32_t keyCode;
        std::optional<std::string> characters;
    };
    constexpr std::uint32_t qKey = 24;
    constexpr std::uint32_t yKey = 29;
    constexpr std::uint32_t digit1 = 10;
    constexpr std::uint32_t keypad7 = 79;
    for (const Row& row : {
             Row{"a letter", "us", {qKey, controlBit | altBit}, 12, "q"},
             Row{"Shift applies", "us", {digit1, controlBit | shiftBit}, 18, "!"},
             Row{"Control, Option, Command, locks and AltGr do not",
                 "de",
                 {qKey, controlBit | altBit | superBit | capsLockBit | numLockBit | level3Bit},
                 12,
                 "q"},
             Row{"German keyboards have Z there", "de", {yKey, controlBit}, 16, "z"},
             Row{"French ones A", "fr", {qKey, controlBit}, 12, "a"},
             Row{"and & on the first digit", "fr", {digit1, controlBit}, 18, "&"},
             Row{"the second layout is in force", "us,ru", {qKey, controlBit | secondGroup}, 12, "й"},
             Row{"a dead key types nothing by itself", "de", {49, controlBit}, 50, std::nullopt},
             Row{"function keys", "us", {71, controlBit}, 96, "\uF708"},
             Row{"Home", "us", {110, controlBit | shiftBit}, 115, "\uF729"},
             Row{"arrows", "us", {113, controlBit}, 123, "\uF702"},
             Row{"the key pad without Num Lock", "us", {keypad7, controlBit}, 89, "7"},
             Row{"and with it and Shift", "us", {keypad7, controlBit | numLockBit | shiftBit}, 89, "7"},
             Row{"Forward Delete", "us", {119, 0}, 117, "\uF728"},
             Row{"a key without a place on the other keyboards", "us", {122, controlBit}, 0xFFFF, std::nullopt},
             Row{"a key code that no keyboard has", "us", {4000, controlBit}, 0xFFFF, std::nullopt},
         }) {
        SCOPED_TRACE(row.why);
        const Keymap map = keymap(row.layouts);
        ASSERT_TRUE(map);
        const auto event = keyDown(row.press, *map, modifierMap);
        ASSERT_TRUE(event);
        EXPECT_EQ(event->keyCode, row.keyCode);
        EXPECT_EQ(event->charactersIgnoringModifiers, row.characters);
    }
}

TEST(KeyInput, ModifiersAreWhereTheMapHasThem) {
    const Keymap map = keymap("us");
    const NativeKeyPress all{.keyCode = 45, .state = shiftBit | controlBit | altBit | superBit | numLockBit};
    EXPECT_EQ(bindingFromKeyEvent(*keyDown(all, *map, modifierMap))->display, "⌃⌥⇧⌘K");
    const NativeKeyPress altOnly{.keyCode = 45, .state = altBit};
    EXPECT_EQ(keyDown(altOnly, *map, {.numLock = numLockBit, .option = superBit, .command = altBit})->modifierFlags,
              NSEventModifierFlagCommand);
    EXPECT_EQ(keyDown(altOnly, *map, ModifierMap{})->modifierFlags, 0U) << "a map without an Alt key";
}

TEST(KeyInput, AKeyThatOnlyModifiesIsNoPress) {
    const Keymap map = keymap("us,ru", "grp:menu_toggle");
    for (const std::uint32_t keyCode : {37U, 50U, 64U, 66U, 77U, 108U, 133U, 135U}) {
        EXPECT_FALSE(keyDown({.keyCode = keyCode, .state = controlBit}, *map, modifierMap)) << keyCode;
    }
    EXPECT_TRUE(keyDown({.keyCode = 24}, *map, modifierMap));
}

TEST(KeyInput, EscapeIsWhereTheMapHasIt) {
    const Keymap map = keymap("us", "caps:swapescape");
    EXPECT_EQ(keyDown({.keyCode = 66}, *map, modifierMap)->keyCode, 53);
    EXPECT_FALSE(keyDown({.keyCode = 9}, *map, modifierMap)) << "that one locks capitals now";
}

} // namespace
} // namespace brisk::x11
