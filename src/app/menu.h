#pragma once

#include "platform/modifier_flags.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brisk {

/// What choosing a menu item does.
enum class MenuAction : std::uint8_t { none, runWindowCommand, showSettings, showAbout, checkForUpdates, quit };

/// One item of a menu, as a value; what shows it decides nothing.
struct MenuItem {
    std::string title;
    MenuAction action = MenuAction::none;
    /// The key shown beside the title (AppKit's characters for keys that type none), empty for none.
    std::string keyEquivalent;
    NSEventModifierFlags keyEquivalentModifierMask = NSEventModifierFlagCommand;
    /// The command identifier of a window command.
    std::optional<std::string> representedObject;
    bool isEnabled = true;
    bool isSeparator = false;
    /// An item with these opens a submenu of its own title.
    std::vector<MenuItem> submenu;

    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

struct Menu {
    std::string title;
    std::vector<MenuItem> items;
    friend bool operator==(const Menu&, const Menu&) = default;
};

inline MenuItem separatorItem() {
    return {.isSeparator = true};
}

} // namespace brisk
