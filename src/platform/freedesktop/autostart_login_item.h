#pragma once

#include "platform/login_item.h"

#include <filesystem>
#include <functional>

namespace brisk::freedesktop {

/// Where the user's own autostart entries are: `autostart` in `$XDG_CONFIG_HOME`, or in `~/.config` where that is unset
/// or not absolute (Desktop Application Autostart and XDG Base Directory Specifications).
std::filesystem::path autostartFolderOfUser();

/// The login item as an entry `brisk.desktop` among the user's autostart entries. Desktops switch an entry off by
/// writing `Hidden=true` or `X-GNOME-Autostart-enabled=false` into it: that is the user's word, which we never
/// overrule.
class AutostartLoginItem final : public LoginItem {
public:
    /// `program` is the absolute path of what is to start. `openSettings` shows where the desktop lists what starts at
    /// login.
    AutostartLoginItem(const std::filesystem::path& folder, std::filesystem::path program,
                       std::function<void()> openSettings);

    LoginItemStatus status() const override;
    [[nodiscard]] std::optional<std::string> registerService() override;
    [[nodiscard]] std::optional<std::string> unregisterService() override;
    void openSystemSettingsLoginItems() override;

private:
    std::filesystem::path file_;
    std::filesystem::path program_;
    std::function<void()> openSettings_;
};

} // namespace brisk::freedesktop
