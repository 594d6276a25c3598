#pragma once

#include "app/settings_row.h"

#include <filesystem>
#include <string>

namespace brisk {

/// What the Sync pane says about where the settings are stored.
struct SyncPane {
    PaneHeading heading;
    SettingsRow settingsLocation;
    std::string storage;
};

SyncPane syncPane(const std::filesystem::path& settingsFile);

} // namespace brisk
