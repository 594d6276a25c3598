#pragma once

#include "app/menu.h"
#include "settings/app_settings.h"

namespace brisk {

/// The status item's menu: every window command with its shortcut, then the program's own items. A pure function of the
/// settings at the moment it opens; without settings (before they are loaded) it has no shortcuts and no custom
/// layouts.
Menu statusMenu(const AppSettings* settings);

} // namespace brisk
