#pragma once

#include "desktop/support/desktop_connection.h"

namespace brisk::tour {

/// The display of the tour and what of it a panel at its top takes.
constexpr desktop::PixelSize screenSize{.width = 1920, .height = 1080};
constexpr int panelHeight = 32;
/// The window gap of the tour's settings.
constexpr int gap = 10;

/// Cells [firstColumn, endColumn) and rows, from the top, of a grid over the usable area with a gap around each cell.
/// Computed from the layouts' definition and not by the program's code.
desktop::PixelRect cells(int columns, int firstColumn, int endColumn, int rows, int firstRow, int endRow);
/// 72 hundredths of the usable area inside its gap, in its middle.
desktop::PixelRect centered();

/// What of `frame` a window can take: not below its minimum size, and no part of a character cell. Throws
/// `std::runtime_error` when the window is gone.
desktop::PixelRect allowedByHints(desktop::DesktopConnection& desktop, xcb_window_t window, desktop::PixelRect frame);

} // namespace brisk::tour
