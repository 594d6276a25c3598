#include "platform/simulated/key_input.h"

#include "hotkeys/function_keys.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace brisk::simulated {

namespace {

struct Label {
    std::uint32_t keyCode;
    std::string_view plain;
    std::string_view shifted;
};

constexpr auto labels = std::to_array<Label>({
    {0, "a", "A"},    {1, "s", "S"},    {2, "d", "D"},  {3, "f", "F"},        {4, "h", "H"},        {5, "g", "G"},
    {6, "z", "Z"},    {7, "x", "X"},    {8, "c", "C"},  {9, "v", "V"},        {11, "b", "B"},       {12, "q", "Q"},
    {13, "w", "W"},   {14, "e", "E"},   {15, "r", "R"}, {16, "y", "Y"},       {17, "t", "T"},       {18, "1", "!"},
    {19, "2", "@"},   {20, "3", "#"},   {21, "4", "$"}, {22, "6", "^"},       {23, "5", "%"},       {25, "9", "("},
    {26, "7", "&"},   {28, "8", "*"},   {29, "0", ")"}, {31, "o", "O"},       {32, "u", "U"},       {34, "i", "I"},
    {35, "p", "P"},   {37, "l", "L"},   {38, "j", "J"}, {40, "k", "K"},       {45, "n", "N"},       {46, "m", "M"},
    {36, "\r", "\r"}, {48, "\t", "\t"}, {49, " ", " "}, {51, "\x7F", "\x7F"}, {53, "\x1B", "\x1B"},
});

/// Command, Shift, Caps Lock, Option and Control, with their right-hand twins.
constexpr bool isModifierKey(std::uint32_t keyCode) {
    return keyCode >= 54 && keyCode <= 62;
}

} // namespace

std::optional<KeyEvent> KeyInput::keyDown(const NativeKeyPress& press) {
    if (isModifierKey(press.keyCode)) {
        return std::nullopt;
    }
    KeyEvent event{.modifierFlags = press.state, .keyCode = static_cast<std::uint16_t>(press.keyCode)};
    if (const auto character = functionKeyCharacter(press.keyCode)) {
        event.charactersIgnoringModifiers = *character;
    } else if (const auto* const label = std::ranges::find(labels, press.keyCode, &Label::keyCode);
               label != labels.end()) {
        event.charactersIgnoringModifiers =
            (press.state & NSEventModifierFlagShift) != 0 ? label->shifted : label->plain;
    } else {
        event.keyCode = noVirtualKeyCode;
    }
    return event;
}

} // namespace brisk::simulated
