#pragma once

#include <string>

namespace brisk {

/// What stands at the top of a pane.
struct PaneHeading {
    std::string title;
    std::string subtitle;
    friend bool operator==(const PaneHeading&, const PaneHeading&) = default;
};

/// The texts of one line of a pane; its controls stand beside them.
struct SettingsRow {
    std::string title;
    std::string detail;
    /// The name of the symbol image before the title; empty for none.
    std::string symbolName;
    friend bool operator==(const SettingsRow&, const SettingsRow&) = default;
};

} // namespace brisk
