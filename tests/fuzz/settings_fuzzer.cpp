// Any bytes are settings or are refused; settings stay what they are when they are written and read again.

#include "promise.h"
#include "settings/settings_json.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string_view>
#include <variant>

namespace brisk {
namespace {

void checkRanges(const AppSettings& settings) {
    promise(settings.windowGap >= 0 && settings.windowGap <= maximumWindowGap, "the gap is in its range");
    std::set<CommandIdentifier> known;
    for (const WindowLayout layout : allWindowLayouts) {
        known.insert(commandIdentifier(layout));
    }
    for (const CommandIdentifier& target : settings.dragEnabledBuiltInWindowLayoutIDs) {
        promise(known.contains(target) && target != commandIdentifier(WindowLayout::restore), "drop zones are layouts");
    }
    promise(std::ranges::adjacent_find(settings.dragEnabledBuiltInWindowLayoutIDs, std::ranges::greater_equal{}) ==
                settings.dragEnabledBuiltInWindowLayoutIDs.end(),
            "drop zones are unique and ascend");
    for (const CustomWindowLayout& layout : settings.customWindowLayouts) {
        known.insert(commandIdentifier(layout));
        const WindowGridSelection& block = layout.selection;
        promise(block.columns >= 1 && block.columns <= 6 && block.rows >= 1 && block.rows <= 6, "grids are small");
        promise(block.column >= 0 && block.columnSpan >= 1 && block.column + block.columnSpan <= block.columns &&
                    block.row >= 0 && block.rowSpan >= 1 && block.row + block.rowSpan <= block.rows,
                "blocks lie in their grid");
    }
    for (const CommandIdentifier& command : settings.disabledCommandHotkeys) {
        promise(known.contains(command), "cleared commands are known");
    }
    for (const auto& [command, binding] : settings.commandHotkeys) {
        promise(known.contains(command), "commands with a shortcut are known");
    }
}

/// What a file keeps of the settings. A shortcut that equals its default is left out of it: it is read again with the
/// default's text, and not at all where the file also says that the default was cleared.
AppSettings afterReload(AppSettings settings) {
    for (const auto& [command, binding] : defaultCommandHotkeys()) {
        const auto own = settings.commandHotkeys.find(command);
        if (own == settings.commandHotkeys.end() || !isSameShortcut(own->second, binding)) {
            continue;
        }
        if (std::ranges::find(settings.disabledCommandHotkeys, command) != settings.disabledCommandHotkeys.end()) {
            settings.commandHotkeys.erase(own);
        } else {
            own->second = binding;
        }
    }
    return settings;
}

void check(std::string_view bytes) {
    const auto decoded = decodeSettings(bytes);
    const auto* const settings = std::get_if<AppSettings>(&decoded);
    if (settings == nullptr) {
        promise(!std::get<SettingsDecodingError>(decoded).description.empty(), "a refusal says why");
        return;
    }
    checkRanges(*settings);
    promise(AppSettings(StoredSettings{.customWindowLayouts = settings->customWindowLayouts,
                                       .disabledCommandHotkeys = settings->disabledCommandHotkeys,
                                       .commandHotkeys = settings->commandHotkeys,
                                       .windowGap = settings->windowGap,
                                       .dragEnabledBuiltInWindowLayoutIDs = settings->dragEnabledBuiltInWindowLayoutIDs,
                                       .hasCompletedOnboarding = settings->hasCompletedOnboarding}) == *settings,
            "what is clean stays as it is when it is cleaned again");
    const auto reloaded = decodeSettings(encodeSettings(*settings));
    promise(std::holds_alternative<AppSettings>(reloaded), "what was written can be read");
    promise(std::get<AppSettings>(reloaded) == afterReload(*settings), "what was written is what is read");
}

} // namespace
} // namespace brisk

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brisk::check({reinterpret_cast<const char*>(data), size});
    return 0;
}
