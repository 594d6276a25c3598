#include "app/windows_pane.h"

#include "text/unicode_text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace brisk {

namespace {

BuiltInLayoutRow builtInRow(WindowLayout layout, const AppSettings& settings) {
    const CommandIdentifier command = commandIdentifier(layout);
    const auto& dragTargets = settings.dragEnabledBuiltInWindowLayoutIDs;
    return {
        .row = {.title = std::string(title(layout)),
                .detail = std::string(subtitle(layout)),
                .symbolName = std::string(symbolName(layout))},
        .layout = layout,
        .command = command,
        .binding = hotKeyBinding(settings, command),
        .isDragTarget = canBeDropZone(layout)
                            ? std::optional(std::ranges::find(dragTargets, command) != dragTargets.end())
                            : std::nullopt,
    };
}

CustomLayoutRow customRow(const CustomWindowLayout& layout, const AppSettings& settings) {
    const CommandIdentifier command = commandIdentifier(layout);
    return {
        .row = {.title = layout.name,
                .detail =
                    areaDescription(layout.selection) + (layout.isAvailableForDragging ? " \u00B7 Drag target" : ""),
                .symbolName = "square.grid.3x3"},
        .layout = layout,
        .command = command,
        .binding = hotKeyBinding(settings, command),
    };
}

/// Takes the prefix off, if it is there.
bool consume(std::string_view& text, std::string_view prefix) {
    const bool isThere = text.starts_with(prefix);
    if (isThere) {
        text.remove_prefix(prefix.size());
    }
    return isThere;
}

} // namespace

WindowsPane windowsPane(const AppSettings& settings) {
    WindowsPane pane{
        .heading = {.title = "Windows", .subtitle = "Configure where windows move and how each layout is invoked."},
        .windowSpacing = {.title = "Window spacing", .detail = "Space at display edges and between adjacent windows."},
        .dragZones = {.title = "Drag zones", .detail = "Enable Drag below, then hold Shift while moving a window."},
        .dragZonesState = "Optional",
        .customLayouts = {.title = "Custom layouts",
                          .detail = "Create display-relative grid areas with their own shortcut and drag behavior."},
    };
    for (const WindowLayout layout : allWindowLayouts) {
        pane.builtInLayouts.push_back(builtInRow(layout, settings));
    }
    for (const CustomWindowLayout& layout : settings.customWindowLayouts) {
        pane.customLayoutRows.push_back(customRow(layout, settings));
    }
    return pane;
}

std::optional<std::int64_t> typedWindowGap(std::string_view text) {
    const std::string typed = trimmed(text);
    std::string_view digits = typed;
    const bool isNegative = consume(digits, "-") || consume(digits, "\u2212");
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) {
        return std::nullopt;
    }
    std::int64_t value = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (parsed.ec == std::errc::result_out_of_range) {
        value = std::numeric_limits<std::int64_t>::max();
    }
    return isNegative ? -value : value;
}

std::int64_t setWindowGap(SettingsStore& store, std::int64_t gap) {
    store.settings.windowGap = std::clamp<std::int64_t>(gap, 0, maximumWindowGap);
    store.save();
    return store.settings.windowGap;
}

} // namespace brisk
