#include "settings/app_settings.h"

#include "hotkeys/virtual_keys.h"
#include "platform/hot_key_service.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace brisk {

namespace {

std::set<CommandIdentifier> knownCommands(const std::vector<CustomWindowLayout>& customLayouts) {
    std::set<CommandIdentifier> known;
    for (const WindowLayout layout : allWindowLayouts) {
        known.insert(commandIdentifier(layout));
    }
    for (const CustomWindowLayout& layout : customLayouts) {
        known.insert(commandIdentifier(layout));
    }
    return known;
}

std::vector<CommandIdentifier> sanitizedDragTargets(std::vector<CommandIdentifier> identifiers) {
    std::set<CommandIdentifier> eligible;
    for (const WindowLayout layout : allWindowLayouts) {
        if (canBeDropZone(layout)) {
            eligible.insert(commandIdentifier(layout));
        }
    }
    std::erase_if(identifiers, [&](const CommandIdentifier& identifier) { return !eligible.contains(identifier); });
    std::ranges::sort(identifiers);
    identifiers.erase(std::unique(identifiers.begin(), identifiers.end()), identifiers.end());
    return identifiers;
}

} // namespace

const CommandHotkeys& defaultCommandHotkeys() {
    static const CommandHotkeys table = [] {
        CommandHotkeys hotkeys;
        const auto add = [&](WindowLayout layout, std::uint32_t keyCode, const char* keyName) {
            hotkeys[commandIdentifier(layout)] = {
                .keyCode = keyCode, .modifiers = controlKey | optionKey, .display = std::string("⌃⌥") + keyName};
        };
        // By position: C, U, I, J and K are where an ANSI keyboard has them.
        add(WindowLayout::leftHalf, kVK_LeftArrow, "◀");
        add(WindowLayout::rightHalf, kVK_RightArrow, "▶");
        add(WindowLayout::topHalf, kVK_UpArrow, "▲");
        add(WindowLayout::bottomHalf, kVK_DownArrow, "▼");
        add(WindowLayout::maximize, kVK_Return, "↵");
        add(WindowLayout::center, kVK_ANSI_C, "C");
        add(WindowLayout::topLeft, kVK_ANSI_U, "U");
        add(WindowLayout::topRight, kVK_ANSI_I, "I");
        add(WindowLayout::bottomLeft, kVK_ANSI_J, "J");
        add(WindowLayout::bottomRight, kVK_ANSI_K, "K");
        add(WindowLayout::restore, kVK_Delete, "⌫");
        return hotkeys;
    }();
    return table;
}

AppSettings::AppSettings(StoredSettings stored)
    : commandHotkeys(defaultCommandHotkeys()),
      disabledCommandHotkeys(std::move(stored.disabledCommandHotkeys)),
      windowGap(std::clamp<std::int64_t>(stored.windowGap, 0, maximumWindowGap)),
      customWindowLayouts(std::move(stored.customWindowLayouts)),
      dragEnabledBuiltInWindowLayoutIDs(sanitizedDragTargets(std::move(stored.dragEnabledBuiltInWindowLayoutIDs))),
      hasCompletedOnboarding(stored.hasCompletedOnboarding) {
    const std::set<CommandIdentifier> known = knownCommands(customWindowLayouts);
    std::erase_if(disabledCommandHotkeys,
                  [&](const CommandIdentifier& identifier) { return !known.contains(identifier); });
    for (const CommandIdentifier& identifier : disabledCommandHotkeys) {
        commandHotkeys.erase(identifier);
    }
    // After the removal: a shortcut that is stored for a cleared command is in force.
    for (auto& [identifier, binding] : stored.commandHotkeys) {
        if (known.contains(identifier)) {
            commandHotkeys.insert_or_assign(identifier, std::move(binding));
        }
    }
}

std::optional<HotKeyBinding> hotKeyBinding(const AppSettings& settings, const CommandIdentifier& command) {
    const auto bound = settings.commandHotkeys.find(command);
    return bound != settings.commandHotkeys.end() ? std::optional(bound->second) : std::nullopt;
}

} // namespace brisk
