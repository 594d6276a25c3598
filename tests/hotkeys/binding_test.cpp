#include "hotkeys/binding_from_key.h"
#include "hotkeys/menu_key_equivalent.h"
#include "hotkeys/virtual_keys.h"
#include "platform/hot_key_service.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace brisk {
namespace {

constexpr NSEventModifierFlags control = NSEventModifierFlagControl;
constexpr NSEventModifierFlags option = NSEventModifierFlagOption;
constexpr NSEventModifierFlags shift = NSEventModifierFlagShift;
constexpr NSEventModifierFlags command = NSEventModifierFlagCommand;
constexpr NSEventModifierFlags capsLockAndFunction = (1U << 16U) | (1U << 23U);

TEST(Binding, IsMadeFromAKeyPress) {
    struct Row {
        const char* why;
        KeyEvent event;
        HotKeyBinding expected;
        const char* keyEquivalent;
    };
    for (const Row& row : {
             Row{"arrows have symbols", {control | option, 123, "\uF702"}, {123, 6144, "⌃⌥◀"}, "\uF702"},
             Row{"letters show as capitals", {option | control, 8, "c"}, {8, 6144, "⌃⌥C"}, "c"},
             Row{"the order of symbols is fixed", {command | shift, 40, "K"}, {40, 768, "⇧⌘K"}, "k"},
             Row{"all four", {command | shift | option | control, 40, "K"}, {40, 6912, "⌃⌥⇧⌘K"}, "k"},
             Row{"locks do not count", {control | capsLockAndFunction, 49, " "}, {49, 4096, "⌃Space"}, " "},
             Row{"Return keeps its key code", {control | option, 36, "\r"}, {36, 6144, "⌃⌥↵"}, "\r"},
             Row{"so does keypad Enter", {control | option, 76, "\x03"}, {76, 6144, "⌃⌥↵"}, "\x03"},
             Row{"Delete", {control | option, 51, "\x7F"}, {51, 6144, "⌃⌥⌫"}, "\b"},
             Row{"function keys show their character", {command, 96, "\uF708"}, {96, 256, "⌘\uF708"}, "\uF708"},
             Row{"other alphabets have capitals too", {control, 8, "с"}, {8, 4096, "⌃С"}, "с"},
         }) {
        SCOPED_TRACE(row.why);
        const auto binding = bindingFromKeyEvent(row.event);
        ASSERT_TRUE(binding);
        EXPECT_EQ(*binding, row.expected);
        EXPECT_EQ(menuKeyEquivalent(*binding), row.keyEquivalent);
        EXPECT_EQ(menuModifierMask(binding->modifiers), row.event.modifierFlags & (control | option | shift | command));
    }
}

TEST(Binding, IsRefusedForWhatCannotBeAShortcut) {
    struct Row {
        const char* why;
        KeyEvent event;
    };
    for (const Row& row : {
             Row{"no modifier", {0, 40, "k"}},
             Row{"Shift alone is typing", {shift, 40, "K"}},
             Row{"Escape gives up", {control | option, 53, "\x1B"}},
             Row{"Tab is white space", {control | option, 48, "\t"}},
             Row{"a key that types nothing", {control, 55, std::nullopt}},
             Row{"or the empty text", {control, 55, ""}},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(bindingFromKeyEvent(row.event), std::nullopt);
    }
}

TEST(MenuKeyEquivalent, ComesFromTheTextWhereTheKeyHasNoneOfItsOwn) {
    EXPECT_EQ(menuKeyEquivalent({.keyCode = kVK_LeftArrow, .display = "anything"}), NSLeftArrowFunctionKey);
    EXPECT_EQ(menuKeyEquivalent({.keyCode = 40, .display = "⌃⌥⇧⌘"}), std::nullopt) << "modifiers only";
    EXPECT_EQ(menuKeyEquivalent({.keyCode = 40, .display = ""}), std::nullopt);
    EXPECT_EQ(menuKeyEquivalent({.keyCode = 40, .display = "⌘⌃Ä⌘"}), "ä⌘") << "only the leading run goes";
    EXPECT_EQ(menuModifierMask(controlKey | cmdKey | 0xFU), control | command) << "other bits are ignored";
}

} // namespace
} // namespace brisk
