#pragma once

#include <filesystem>

namespace brisk {

/// The folders from which every settings path is built.
struct SettingsFolders {
    std::filesystem::path home;
    std::filesystem::path applicationSupport;
};

/// The folders of the user who runs the program. Application support is `$XDG_DATA_HOME`, or `~/.local/share` where
/// that is unset or not absolute (XDG Base Directory Specification); home is `$HOME`, or what the password database
/// says.
SettingsFolders settingsFoldersOfUser();

/// Where iCloud Drive keeps its files. A folder that is there means the settings follow the user between machines.
std::filesystem::path iCloudDriveFolderURL(const SettingsFolders& folders);

std::filesystem::path localFileURL(const SettingsFolders& folders);

/// The settings file in iCloud Drive when that is there now, else the local one.
std::filesystem::path defaultFileURL(const SettingsFolders& folders);

/// The other place: iCloud Drive for the local settings file, the local file for anything else.
std::filesystem::path counterpartFileURL(const SettingsFolders& folders, const std::filesystem::path& fileURL);

} // namespace brisk
