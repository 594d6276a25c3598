#include "app/sync_pane.h"

namespace brisk {

SyncPane syncPane(const std::filesystem::path& settingsFile) {
    const bool isInICloudDrive =
        settingsFile.string().find("Mobile Documents/com~apple~CloudDocs") != std::string::npos;
    return {
        .heading = {.title = "Sync", .subtitle = "Window settings can follow you between Macs through iCloud Drive."},
        .settingsLocation = {.title = "Settings location",
                             .detail = "Shortcuts, spacing, custom layouts, and drag targets are stored together."},
        .storage = isInICloudDrive ? "iCloud Drive" : "Local Application Support",
    };
}

} // namespace brisk
