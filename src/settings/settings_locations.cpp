#include "settings/settings_locations.h"

#include "settings/settings_file.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <vector>

namespace brisk {

namespace {

std::optional<std::filesystem::path> absolutePathInEnvironment(const char* variable) {
    // Read at start-up, while nothing else could be changing the environment.
    const char* const value = std::getenv(variable);
    if (value == nullptr || !std::filesystem::path(value).is_absolute()) {
        return std::nullopt;
    }
    return value;
}

std::filesystem::path homeInPasswordDatabase() {
    constexpr std::size_t entrySize = 16384;
    std::vector<char> text(entrySize);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, text.data(), text.size(), &found) != 0 || found == nullptr) {
        return "/";
    }
    return entry.pw_dir;
}

std::filesystem::path settingsFileIn(const std::filesystem::path& folder) {
    return folder / "brisk" / "native-settings.json";
}

std::filesystem::path standardized(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return (error ? path : absolute).lexically_normal();
}

} // namespace

SettingsFolders settingsFoldersOfUser() {
    const auto namedHome = absolutePathInEnvironment("HOME");
    const std::filesystem::path home = namedHome ? *namedHome : homeInPasswordDatabase();
    const auto namedData = absolutePathInEnvironment("XDG_DATA_HOME");
    return {.home = home, .applicationSupport = namedData ? *namedData : home / ".local" / "share"};
}

std::filesystem::path iCloudDriveFolderURL(const SettingsFolders& folders) {
    return folders.home / "Library" / "Mobile Documents" / "com~apple~CloudDocs";
}

std::filesystem::path localFileURL(const SettingsFolders& folders) {
    return settingsFileIn(folders.applicationSupport);
}

std::filesystem::path defaultFileURL(const SettingsFolders& folders) {
    const std::filesystem::path iCloudDrive = iCloudDriveFolderURL(folders);
    return itemExists(iCloudDrive) ? settingsFileIn(iCloudDrive) : localFileURL(folders);
}

std::filesystem::path counterpartFileURL(const SettingsFolders& folders, const std::filesystem::path& fileURL) {
    const std::filesystem::path local = localFileURL(folders);
    return standardized(fileURL) == standardized(local) ? settingsFileIn(iCloudDriveFolderURL(folders)) : local;
}

} // namespace brisk
