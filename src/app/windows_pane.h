#pragma once

#include "app/settings_row.h"
#include "hotkeys/command_catalogue.h"
#include "hotkeys/hot_key_binding.h"
#include "settings/settings_store.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brisk {

struct BuiltInLayoutRow {
    SettingsRow row;
    WindowLayout layout = WindowLayout::leftHalf;
    CommandIdentifier command;
    std::optional<HotKeyBinding> binding;
    /// None where dragging cannot be enabled at all.
    std::optional<bool> isDragTarget;
};

struct CustomLayoutRow {
    SettingsRow row;
    CustomWindowLayout layout;
    CommandIdentifier command;
    std::optional<HotKeyBinding> binding;
};

/// What the Windows pane shows of the settings.
struct WindowsPane {
    PaneHeading heading;
    SettingsRow windowSpacing;
    SettingsRow dragZones;
    std::string dragZonesState;
    std::vector<BuiltInLayoutRow> builtInLayouts;
    SettingsRow customLayouts;
    std::vector<CustomLayoutRow> customLayoutRows;
};

WindowsPane windowsPane(const AppSettings& settings);

/// The whole number that was typed, out of range or not (a number too large for the type is its largest), or none when
/// the text is anything else. Both the hyphen and the minus sign make it negative.
std::optional<std::int64_t> typedWindowGap(std::string_view text);

/// Stores the gap, brought into 0...`maximumWindowGap`, saves and gives the stored value.
std::int64_t setWindowGap(SettingsStore& store, std::int64_t gap);

} // namespace brisk
