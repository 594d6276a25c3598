#pragma once

#include "app/menu.h"

namespace brisk {

/// The program's own menu, seen while one of its windows is open.
Menu mainMenu();

/// The items that main menu and status menu share.
MenuItem aboutItem();
MenuItem settingsItem();
MenuItem quitItem();

} // namespace brisk
