#pragma once

#include "app/menu.h"

#include <functional>

namespace brisk {

/// The program's item in the menu bar or tray. Main thread only. It shows the face, and a menu that it asks for each
/// time just before it opens; a tray that comes late or comes back gets the item then.
class StatusItem {
public:
    struct Callbacks {
        /// The menu's contents now.
        std::function<Menu()> menuNeedsUpdate;
        /// The user chose that item.
        std::function<void(const MenuItem&)> onChosen;
    };

    virtual ~StatusItem() = default;
    /// Takes the menu's contents anew, also while it is open.
    virtual void updateMenu() = 0;
};

} // namespace brisk
