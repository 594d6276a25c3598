#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace brisk {

/// The link to the place where the user allows this program to manage windows.
inline constexpr std::string_view accessibilityPrivacySettingsLink =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

/// Shows the user things that other programs show. Main thread only. Never waits for another program, so whether the
/// thing has appeared is not known when a call returns; where no program is there to show it, nothing happens.
class LinkOpener {
public:
    virtual ~LinkOpener() = default;
    /// Opens a web page, or `accessibilityPrivacySettingsLink`, where that program of the user's choice shows it.
    virtual void openURL(std::string_view url) = 0;
    /// Shows the folder that contains the file, with the file selected if the file viewer can. A file that does not
    /// exist yet: the closest folder above it that does.
    virtual void selectFile(const std::filesystem::path& file) = 0;
};

} // namespace brisk
