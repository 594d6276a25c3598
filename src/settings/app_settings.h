#pragma once

#include "hotkeys/command_catalogue.h"
#include "hotkeys/hot_key_binding.h"
#include "layouts/custom_layout.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace brisk {

/// Ordered, so that whoever walks it (a search for a shortcut's owner, the file's writer) meets the same command first
/// every time.
using CommandHotkeys = std::map<CommandIdentifier, HotKeyBinding>;

/// The shortcuts the built-in layouts have until the user changes them.
const CommandHotkeys& defaultCommandHotkeys();

/// The widest gap the settings hold, in points.
inline constexpr auto maximumWindowGap = static_cast<std::int64_t>(maximumGap);

/// What a settings file says, before any of it is checked against anything else. A member that the file leaves out
/// keeps the value it has here.
struct StoredSettings {
    std::vector<CustomWindowLayout> customWindowLayouts;
    std::vector<CommandIdentifier> disabledCommandHotkeys;
    /// Only what the user changed; the defaults are not among them.
    CommandHotkeys commandHotkeys;
    std::int64_t windowGap = 0;
    std::vector<CommandIdentifier> dragEnabledBuiltInWindowLayoutIDs;
    bool hasCompletedOnboarding = false;
};

/// Everything the user can set, as the program works with it.
struct AppSettings {
    /// The settings of someone who never changed any.
    AppSettings() : AppSettings(StoredSettings{}) {}
    /// Drops what names an unknown command, brings values into their ranges and lays the stored shortcuts over the
    /// defaults.
    explicit AppSettings(StoredSettings stored);

    /// The shortcuts in force: the defaults, minus the cleared ones, plus the user's own.
    CommandHotkeys commandHotkeys;
    /// Commands whose default shortcut the user has cleared, so that the default does not come back.
    std::vector<CommandIdentifier> disabledCommandHotkeys;
    /// Points at display edges and between adjacent windows, 0...`maximumWindowGap`.
    std::int64_t windowGap = 0;
    /// In the user's order.
    std::vector<CustomWindowLayout> customWindowLayouts;
    /// Built-in layouts offered as drop zones: unique, ascending, never the restore command.
    std::vector<CommandIdentifier> dragEnabledBuiltInWindowLayoutIDs;
    bool hasCompletedOnboarding = false;

    friend bool operator==(const AppSettings&, const AppSettings&) = default;
};

/// The command's shortcut in force, if it has one.
std::optional<HotKeyBinding> hotKeyBinding(const AppSettings& settings, const CommandIdentifier& command);

} // namespace brisk
