#include "app/main_menu.h"

namespace brisk {

MenuItem aboutItem() {
    return {.title = "About Brisk", .action = MenuAction::showAbout};
}

MenuItem settingsItem() {
    return {.title = "Settings\u2026", .action = MenuAction::showSettings, .keyEquivalent = ","};
}

MenuItem quitItem() {
    return {.title = "Quit Brisk", .action = MenuAction::quit, .keyEquivalent = "q"};
}

Menu mainMenu() {
    return {.title = "Brisk", .items = {aboutItem(), separatorItem(), settingsItem(), separatorItem(), quitItem()}};
}

} // namespace brisk
