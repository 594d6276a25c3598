// Keys with whatever they type, texts that may not be Unicode, and grids of whatever numbers.

#include "hotkeys/binding_from_key.h"
#include "hotkeys/function_keys.h"
#include "hotkeys/menu_key_equivalent.h"
#include "hotkeys/virtual_keys.h"
#include "layouts/grid_picker.h"
#include "platform/hot_key_service.h"
#include "promise.h"
#include "settings/layout_editing.h"
#include "text/unicode_text.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

namespace brisk {
namespace {

/// As somebody else's reader has it.
bool isUTF8(const std::string& text) {
    try {
        return !nlohmann::json(text).dump().empty();
    } catch (const nlohmann::json::exception&) {
        return false;
    }
}

void checkText(const std::string& text) {
    const std::string middle = trimmed(text);
    promise(text.find(middle) != std::string::npos && trimmed(middle) == middle, "trimming takes from the ends, once");
    const std::string capitals = uppercased(text);
    const std::string smalls = lowercased(text);
    promise(uppercased(capitals) == capitals, "capitals have no other capitals");
    promise(lowercased(smalls) == smalls, "small letters have no other small letters");
    if (isUTF8(text)) {
        promise(isUTF8(middle) && isUTF8(capitals) && isUTF8(smalls) && isUTF8(legibleDisplay(text)),
                "Unicode stays Unicode");
    }
    const std::string name = layoutName(text, "Custom Layout 1");
    promise(!name.empty() && trimmed(name) == name, "a layout has a name without space around it");
}

void checkKey(const KeyEvent& event) {
    const auto binding = bindingFromKeyEvent(event);
    if (!binding) {
        return;
    }
    constexpr NSEventModifierFlags four =
        NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagShift | NSEventModifierFlagCommand;
    promise(binding->keyCode == event.keyCode && binding->keyCode != kVK_Escape, "the key is the one pressed");
    promise((binding->modifiers & (controlKey | optionKey | cmdKey)) != 0, "Shift alone is typing");
    promise(menuModifierMask(binding->modifiers) == (event.modifierFlags & four), "modifiers come back from the menu");
    const auto equivalent = menuKeyEquivalent(*binding);
    promise(!equivalent || !equivalent->empty(), "a menu shows a key or none");
    promise(!legibleDisplay(binding->display).empty(), "a shortcut has a text");
}

bool isInGrid(const WindowGridSelection& block) {
    return normalized(block) == block;
}

void checkGrid(FuzzedDataProvider& data) {
    const auto number = [&] { return data.ConsumeIntegral<std::int64_t>(); };
    const WindowGridSelection any{number(), number(), number(), number(), number(), number()};
    promise(isInGrid(normalized(any)), "normal is normal");
    promise(isInGrid(wholeGrid(number(), number())), "a whole grid is one");

    // Displays as large as they get, and gaps of any number.
    const auto pixels = [&](double least, double most) { return data.ConsumeFloatingPointInRange(least, most); };
    const CGRect area{.origin = {.x = pixels(-1e6, 1e6), .y = pixels(-1e6, 1e6)},
                      .size = {.width = pixels(6, 1e5), .height = pixels(6, 1e5)}};
    const CGRect frame = gridFrame(any, area, data.ConsumeFloatingPoint<double>());
    constexpr double rounding = 1e-6;
    promise(frame.width() >= 1 - rounding && frame.height() >= 1 - rounding && frame.minX() >= area.minX() - rounding &&
                frame.minY() >= area.minY() - rounding && frame.maxX() <= area.maxX() + rounding &&
                frame.maxY() <= area.maxY() + rounding,
            "a block is a point large and lies in its area");

    GridPicker picker(any);
    const CGSize drawing{.width = pixels(0, 1000), .height = pixels(0, 1000)};
    while (data.remaining_bytes() > 0) {
        const auto action = data.ConsumeIntegralInRange(0, 4);
        const CGPoint point{.x = pixels(-10, 1010), .y = pixels(-10, 1010)};
        // Arrow keys go a cell a time; one that is held may be reported for several.
        const auto cells = [&] { return data.ConsumeIntegralInRange<std::int64_t>(-100, 100); };
        switch (action) {
        case 0:
            picker.press(point, drawing);
            break;
        case 1:
            picker.drag(point, drawing);
            break;
        case 2:
            picker.release(point, drawing);
            break;
        case 3:
            picker.moveBlock(cells(), cells());
            break;
        default:
            picker.extendBlock(cells(), cells());
            break;
        }
        promise(isInGrid(picker.selection()), "the selected block lies in its grid");
    }
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    const auto keyCode = data.ConsumeIntegral<std::uint16_t>();
    const auto flags = data.ConsumeIntegral<std::uint32_t>();
    const std::string text = data.ConsumeRandomLengthString();
    brisk::checkText(text);
    brisk::checkKey({.modifierFlags = flags, .keyCode = keyCode, .charactersIgnoringModifiers = text});
    const brisk::HotKeyBinding stored{.keyCode = keyCode, .modifiers = flags, .display = text};
    const auto equivalent = brisk::menuKeyEquivalent(stored);
    brisk::promise(!equivalent || !equivalent->empty(), "a menu shows a key or none");
    brisk::checkGrid(data);
    return 0;
}
