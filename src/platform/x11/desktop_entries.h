#pragma once

#include <optional>
#include <string>

namespace brisk::x11 {

/// The name under which the desktop's menus offer the application with that window class, in the user's language: that
/// of the installed desktop entry which says so by StartupWMClass, else of the one named like the class. Reads the
/// application folders at each call; none when no entry fits.
std::optional<std::string> desktopEntryName(const std::string& windowClass);

} // namespace brisk::x11
