#include "app/status_menu.h"

#include "app/main_menu.h"
#include "hotkeys/menu_key_equivalent.h"
#include "platform/hot_key_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brisk {
namespace {

using testing::ElementsAre;

/// One line an item: its title, "-" for a separator.
std::vector<std::string> titles(const std::vector<MenuItem>& items) {
    std::vector<std::string> result;
    result.reserve(items.size());
    for (const MenuItem& item : items) {
        result.push_back(item.isSeparator ? "-" : item.title);
    }
    return result;
}

const MenuItem& itemTitled(const std::vector<MenuItem>& items, const std::string& title) {
    for (const MenuItem& item : items) {
        if (item.title == title) {
            return item;
        }
    }
    throw std::out_of_range(title);
}

TEST(StatusMenu, ListsEveryCommandInItsGroup) {
    const AppSettings settings;
    const Menu menu = statusMenu(&settings);
    EXPECT_THAT(titles(menu.items), ElementsAre("Window Layouts", "Left Half", "Right Half", "Top Half", "Bottom Half",
                                                "-", "Maximize", "Center", "-", "Top Left", "Top Right", "Bottom Left",
                                                "Bottom Right", "-", "Restore Window", "-", "Settings…", "About Brisk",
                                                "Check for Updates…", "-", "Quit Brisk"));
    EXPECT_FALSE(menu.items.front().isEnabled);
    EXPECT_EQ(menu.items.front().action, MenuAction::none);
    for (const WindowLayout layout : allWindowLayouts) {
        const MenuItem& item = itemTitled(menu.items, std::string(title(layout)));
        EXPECT_EQ(item.action, MenuAction::runWindowCommand);
        EXPECT_EQ(item.representedObject, commandIdentifier(layout));
        EXPECT_FALSE(item.keyEquivalent.empty()) << "every built-in layout has a default shortcut";
        EXPECT_EQ(item.keyEquivalentModifierMask, NSEventModifierFlagControl | NSEventModifierFlagOption);
    }
    EXPECT_EQ(itemTitled(menu.items, "Settings…").keyEquivalent, ",");
    EXPECT_EQ(itemTitled(menu.items, "Quit Brisk").keyEquivalent, "q");
}

TEST(StatusMenu, ShowsTheShortcutsInForceAndTheCustomLayouts) {
    AppSettings settings;
    settings.customWindowLayouts = {{.id = "B", .name = "Wide & low"}, {.id = "A", .name = "Column"}};
    settings.commandHotkeys.erase("window.center");
    settings.commandHotkeys["window.leftHalf"] = {.keyCode = 123, .modifiers = cmdKey, .display = "old text"};
    settings.commandHotkeys["window.custom.A"] = {.keyCode = 40, .modifiers = 6912, .display = "⌃⌥⇧⌘K"};
    settings.commandHotkeys["window.custom.B"] = {.keyCode = 40, .modifiers = 6144, .display = "⌃⌥"};

    const Menu menu = statusMenu(&settings);
    EXPECT_THAT(titles(menu.items), testing::IsSupersetOf({"Restore Window", "Custom Layouts", "Settings…"}));
    EXPECT_EQ(menu.items[15].isSeparator, true);
    EXPECT_EQ(menu.items[16].title, "Custom Layouts");
    EXPECT_EQ(menu.items[17].isSeparator, true);

    const std::vector<MenuItem>& custom = menu.items[16].submenu;
    ASSERT_THAT(titles(custom), ElementsAre("Wide & low", "Column"));
    EXPECT_EQ(custom[1].representedObject, "window.custom.A");
    EXPECT_EQ(custom[1].keyEquivalent, "k");
    EXPECT_EQ(custom[1].keyEquivalentModifierMask, NSEventModifierFlagControl | NSEventModifierFlagOption |
                                                       NSEventModifierFlagShift | NSEventModifierFlagCommand);
    EXPECT_EQ(custom[0].keyEquivalent, "") << "a shortcut whose text names no key";

    EXPECT_EQ(itemTitled(menu.items, "Center").keyEquivalent, "");
    EXPECT_EQ(itemTitled(menu.items, "Left Half").keyEquivalent, NSLeftArrowFunctionKey);
    EXPECT_EQ(itemTitled(menu.items, "Left Half").keyEquivalentModifierMask, NSEventModifierFlagCommand);
}

TEST(StatusMenu, WithoutSettingsHasNoShortcuts) {
    const Menu menu = statusMenu(nullptr);
    EXPECT_EQ(itemTitled(menu.items, "Left Half").keyEquivalent, "");
    EXPECT_EQ(itemTitled(menu.items, "Quit Brisk").keyEquivalent, "q");
}

TEST(MainMenu, HoldsTheProgramsOwnItems) {
    EXPECT_EQ(mainMenu().title, "Brisk");
    EXPECT_THAT(titles(mainMenu().items), ElementsAre("About Brisk", "-", "Settings…", "-", "Quit Brisk"));
}

} // namespace
} // namespace brisk
