#pragma once

#include "settings/app_settings.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brisk {

/// The numbers of columns and rows that are offered for a grid. Settings files may hold grids of one, too.
inline constexpr std::array<std::int64_t, 5> gridSizes{2, 3, 4, 5, 6};
static_assert(gridSizes.back() == WindowGridSelection::maximumGridDimension);
/// What counts where none of them is chosen.
inline constexpr std::int64_t standardGridSize = 4;

/// The name of the next layout that gets none from the user.
std::string defaultLayoutName(const AppSettings& settings);
/// A layout to start from: the whole display, with an id that no other layout has.
CustomWindowLayout defaultNewLayout(const AppSettings& settings);
/// The whole of a grid with these chosen sizes.
WindowGridSelection wholeGrid(std::optional<std::int64_t> columns, std::optional<std::int64_t> rows);
/// The name to save for what was typed: without white space around it, and never empty.
std::string layoutName(std::string_view typed, const std::string& defaultName);

} // namespace brisk
