#pragma once

#include <filesystem>
#include <string>

namespace brisk {

struct KilledSaves {
    /// How many were killed between the first byte and the last, so that they left a temporary file.
    int hitInTheMiddle = 0;
    /// What did not hold. Empty when each start found the settings of one whole save, and left nothing beside the file.
    std::string failure;
};

/// Kills `count` processes at a random moment of the saves they make into the folder, and starts anew after each.
KilledSaves killSaves(int count, const std::filesystem::path& folder);

} // namespace brisk
