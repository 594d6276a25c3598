#include "app/settings_pane.h"

#include <algorithm>

namespace brisk {

namespace {

struct PaneDescription {
    std::string_view rawValue;
    std::string_view title;
    std::string_view symbolName;
    int contentHeight;
};

constexpr PaneDescription description(SettingsPane pane) {
    switch (pane) {
    case SettingsPane::general:
        return {.rawValue = "general", .title = "General", .symbolName = "gearshape", .contentHeight = 380};
    case SettingsPane::windows:
        return {.rawValue = "windows", .title = "Windows", .symbolName = "rectangle.3.group", .contentHeight = 590};
    case SettingsPane::sync:
        return {.rawValue = "sync", .title = "Sync", .symbolName = "icloud", .contentHeight = 250};
    case SettingsPane::about:
        return {.rawValue = "about", .title = "About", .symbolName = "info.circle", .contentHeight = 470};
    }
    return {};
}

static_assert(description(static_cast<SettingsPane>(allSettingsPanes.size())).rawValue.empty(),
              "There is a pane that allSettingsPanes does not list.");

} // namespace

std::string toolbarItemIdentifier(SettingsPane pane) {
    return "briskwm.settings." + std::string(description(pane).rawValue);
}

std::optional<SettingsPane> settingsPaneOfToolbarItem(std::string_view identifier) {
    const auto* const found = std::ranges::find(allSettingsPanes, identifier, toolbarItemIdentifier);
    return found != allSettingsPanes.end() ? std::optional(*found) : std::nullopt;
}

std::string_view title(SettingsPane pane) {
    return description(pane).title;
}

std::string_view symbolName(SettingsPane pane) {
    return description(pane).symbolName;
}

int contentHeight(SettingsPane pane) {
    return description(pane).contentHeight;
}

std::string settingsWindowTitle(SettingsPane pane) {
    return std::string(title(pane)) + " \u2014 Brisk Settings";
}

} // namespace brisk
