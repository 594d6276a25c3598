#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace brisk {

/// The panes of the settings window, in the order of its toolbar.
enum class SettingsPane { general, windows, sync, about };

inline constexpr std::array allSettingsPanes{SettingsPane::general, SettingsPane::windows, SettingsPane::sync,
                                             SettingsPane::about};

/// What names the pane's toolbar item, for example "briskwm.settings.general".
std::string toolbarItemIdentifier(SettingsPane pane);
/// The pane of that toolbar item, or none.
std::optional<SettingsPane> settingsPaneOfToolbarItem(std::string_view identifier);

std::string_view title(SettingsPane pane);
/// The name of the symbol image of the pane's toolbar item.
std::string_view symbolName(SettingsPane pane);
/// The height, in points, of the window's content while the pane is shown.
int contentHeight(SettingsPane pane);
/// What the window is called while the pane is shown, for example "General — Brisk Settings".
std::string settingsWindowTitle(SettingsPane pane);

/// Which pane the settings window shows, and which one it returns to when it is asked for without naming one.
class SettingsPaneSelection {
public:
    void select(SettingsPane pane) {
        selectedPane_ = pane;
        if (pane != SettingsPane::about) {
            lastConfigurationPane_ = pane;
        }
    }
    SettingsPane selectedPane() const { return selectedPane_; }
    /// The last pane shown that configures anything, so never About.
    SettingsPane lastConfigurationPane() const { return lastConfigurationPane_; }

private:
    SettingsPane selectedPane_ = SettingsPane::general;
    SettingsPane lastConfigurationPane_ = SettingsPane::general;
};

} // namespace brisk
