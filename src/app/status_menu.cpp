#include "app/status_menu.h"

#include "app/main_menu.h"
#include "hotkeys/command_catalogue.h"
#include "hotkeys/menu_key_equivalent.h"

#include <initializer_list>

namespace brisk {

namespace {

MenuItem commandItem(std::string title, CommandIdentifier command, const AppSettings* settings) {
    MenuItem item{.title = std::move(title), .action = MenuAction::runWindowCommand};
    if (settings != nullptr) {
        if (const auto binding = hotKeyBinding(*settings, command)) {
            item.keyEquivalent = menuKeyEquivalent(*binding).value_or("");
            item.keyEquivalentModifierMask = menuModifierMask(binding->modifiers);
        }
    }
    item.representedObject = std::move(command);
    return item;
}

MenuItem customLayoutsItem(const AppSettings& settings) {
    MenuItem item{.title = "Custom Layouts"};
    for (const CustomWindowLayout& layout : settings.customWindowLayouts) {
        item.submenu.push_back(commandItem(layout.name, commandIdentifier(layout), &settings));
    }
    return item;
}

} // namespace

Menu statusMenu(const AppSettings* settings) {
    using enum WindowLayout;
    Menu menu;
    menu.items.push_back({.title = "Window Layouts", .isEnabled = false});
    const auto addGroup = [&](std::initializer_list<WindowLayout> layouts) {
        for (const WindowLayout layout : layouts) {
            menu.items.push_back(commandItem(std::string(title(layout)), commandIdentifier(layout), settings));
        }
        menu.items.push_back(separatorItem());
    };
    addGroup({leftHalf, rightHalf, topHalf, bottomHalf});
    addGroup({maximize, center});
    addGroup({topLeft, topRight, bottomLeft, bottomRight});
    addGroup({restore});
    if (settings != nullptr && !settings->customWindowLayouts.empty()) {
        menu.items.push_back(customLayoutsItem(*settings));
        menu.items.push_back(separatorItem());
    }
    menu.items.push_back(settingsItem());
    menu.items.push_back(aboutItem());
    menu.items.push_back({.title = "Check for Updates\u2026", .action = MenuAction::checkForUpdates});
    menu.items.push_back(separatorItem());
    menu.items.push_back(quitItem());
    return menu;
}

} // namespace brisk
