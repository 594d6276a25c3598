#pragma once

#include "desktop/support/desktop_connection.h"

#include <string>

namespace brisk::tour {

/// Writes what a part of the display shows, once its clients have drawn themselves, to a PNG file. Throws
/// `std::runtime_error` when it cannot.
void writeScreenshot(desktop::DesktopConnection& connection, const desktop::PixelRect& part, const std::string& path);

} // namespace brisk::tour
