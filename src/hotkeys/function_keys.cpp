#include "hotkeys/function_keys.h"

#include <algorithm>
#include <array>

namespace brisk {

namespace {

struct FunctionKey {
    std::uint32_t virtualKeyCode;
    std::string_view character;
    std::string_view name;
};

// Characters and codes are AppKit's and Carbon's. One place has two keys: Insert, and Help on Apple's keyboards, whose
// text may be read here though this keyboard never types it.
constexpr auto functionKeys = std::to_array<FunctionKey>({
    {126, "\uF700", "▲"},         {125, "\uF701", "▼"},    {123, "\uF702", "◀"},    {124, "\uF703", "▶"},
    {122, "\uF704", "F1"},        {120, "\uF705", "F2"},   {99, "\uF706", "F3"},    {118, "\uF707", "F4"},
    {96, "\uF708", "F5"},         {97, "\uF709", "F6"},    {98, "\uF70A", "F7"},    {100, "\uF70B", "F8"},
    {101, "\uF70C", "F9"},        {109, "\uF70D", "F10"},  {103, "\uF70E", "F11"},  {111, "\uF70F", "F12"},
    {105, "\uF710", "F13"},       {107, "\uF711", "F14"},  {113, "\uF712", "F15"},  {106, "\uF713", "F16"},
    {64, "\uF714", "F17"},        {79, "\uF715", "F18"},   {80, "\uF716", "F19"},   {90, "\uF717", "F20"},
    {117, "\uF728", "⌦"},         {115, "\uF729", "Home"}, {119, "\uF72B", "End"},  {116, "\uF72C", "Page Up"},
    {121, "\uF72D", "Page Down"}, {110, "\uF735", "Menu"}, {71, "\uF739", "Clear"}, {114, "\uF727", "Insert"},
    {114, "\uF746", "Help"},
});

} // namespace

std::optional<std::string_view> functionKeyCharacter(std::uint32_t virtualKeyCode) {
    const auto* const key = std::ranges::find(functionKeys, virtualKeyCode, &FunctionKey::virtualKeyCode);
    return key == functionKeys.end() ? std::nullopt : std::optional(key->character);
}

std::string legibleDisplay(std::string_view display) {
    std::string text(display);
    for (const FunctionKey& key : functionKeys) {
        if (const auto position = text.find(key.character); position != std::string::npos) {
            text.replace(position, key.character.size(), key.name);
        }
    }
    return text;
}

} // namespace brisk
