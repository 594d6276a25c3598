#pragma once

#include "layouts/grid_selection.h"

#include <array>
#include <optional>
#include <string_view>

namespace brisk {

/// The built-in layouts, in the order in which they are listed everywhere.
enum class WindowLayout {
    leftHalf,
    rightHalf,
    topHalf,
    bottomHalf,
    maximize,
    center,
    topLeft,
    topRight,
    bottomLeft,
    bottomRight,
    restore,
};

inline constexpr std::array allWindowLayouts{
    WindowLayout::leftHalf,   WindowLayout::rightHalf,   WindowLayout::topHalf, WindowLayout::bottomHalf,
    WindowLayout::maximize,   WindowLayout::center,      WindowLayout::topLeft, WindowLayout::topRight,
    WindowLayout::bottomLeft, WindowLayout::bottomRight, WindowLayout::restore,
};

/// The layout's identifier, for example "leftHalf"; what settings and command identifiers are made of.
std::string_view rawValue(WindowLayout layout);
/// The layout whose identifier is exactly `rawValue` (case matters), or none.
std::optional<WindowLayout> windowLayoutFromRawValue(std::string_view rawValue);
/// The name shown to the user, for example "Left Half".
std::string_view title(WindowLayout layout);
/// One line that says what the layout does, shown beside its title in the settings.
std::string_view subtitle(WindowLayout layout);
/// The name of the symbol image shown with the layout.
std::string_view symbolName(WindowLayout layout);
/// Whether the layout can be a drop zone: whether it has a place of its own.
constexpr bool canBeDropZone(WindowLayout layout) {
    return layout != WindowLayout::restore;
}

/// Two fractions of a display's width closer than this are the same fraction.
inline constexpr double fractionTolerance = 0.001;
/// A window this close to a half, in points and on all four of x, y, width and height, counts as being there.
inline constexpr double halfCycleTolerance = 12.0;
/// The widths through which a repeated left or right half goes.
inline constexpr std::array halfWidthFractions{0.5, 0.6666666666666666, 0.3333333333333333};
/// The part of the maximised frame that a centred window takes on each axis.
inline constexpr double centerScale = 0.72;

/// The full-height column of the given width fraction at the left or right edge.
WindowGridSelection halfGridSelection(double fraction, bool isRightSide);

/// Which of `halfWidthFractions` a window at `currentFrame` already occupies on that side, if any. AppKit coordinates.
std::optional<double> matchedHalfFraction(bool isRightSide, const CGRect& visibleFrame, const CGRect& currentFrame,
                                          double gap);

/// Where a layout puts a window that is at `currentFrame` on a display whose usable area is `visibleFrame`; all in
/// AppKit coordinates, points, nothing rounded. A half that the window already fills gives the next width of the cycle:
/// the cycle has no state of its own, it is read from the window. `restore` gives `currentFrame`; restoring is the
/// window manager's.
CGRect layoutFrame(WindowLayout layout, const CGRect& visibleFrame, const CGRect& currentFrame, double gap);

} // namespace brisk
