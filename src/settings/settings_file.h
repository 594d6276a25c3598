#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>

namespace brisk {

/// A larger file is not a settings file and is not read.
inline constexpr std::uint64_t maximumSettingsFileSize = std::uint64_t{64} * 1024 * 1024;

/// Whether anything at all is at the path. A symbolic link counts as what it leads to, so one that leads nowhere is
/// nothing.
bool itemExists(const std::filesystem::path& path);

/// The bytes of a regular file of at most `maximumSettingsFileSize`. Anything else is an error, and never waited for: a
/// FIFO would block, a device may have no end.
[[nodiscard]] std::variant<std::string, std::error_code> readFile(const std::filesystem::path& path);

/// Replaces the file's content so that whoever looks, also after a crash or a power failure, finds the old bytes whole
/// or the new ones whole. Keeps the permission bits of the old file; a new file is the owner's alone. Through a
/// symbolic link the file it leads to is replaced and the link stays. Nothing but a regular file is ever replaced.
///
/// A save that was killed leaves a hidden temporary file in the folder; the next save into that folder removes it.
[[nodiscard]] std::error_code writeFileAtomically(const std::filesystem::path& path, std::string_view bytes);

/// Removes such leftovers without a save, which may never come. Those of a save that still runs stay.
void removeLeftovers(const std::filesystem::path& path);

/// Creates the folder and those above it. One that exists is no error.
[[nodiscard]] std::error_code createFolder(const std::filesystem::path& folder);

/// Renames whatever is at `path` (of a link: the link itself) to `wanted`, in the same folder. Never onto something
/// that exists: then "-2", "-3" and so on goes before the extension. Gives the path it got.
[[nodiscard]] std::variant<std::filesystem::path, std::error_code> moveAside(const std::filesystem::path& path,
                                                                             const std::filesystem::path& wanted);

} // namespace brisk
