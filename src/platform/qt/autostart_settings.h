#pragma once

#include <filesystem>

namespace brisk::qt {

/// Shows where this desktop lists what starts at login: its own settings where it is one we know and they are
/// installed, else the folder of the entries. Does not wait for what it starts.
void openAutostartSettings(const std::filesystem::path& autostartFolder);

} // namespace brisk::qt
