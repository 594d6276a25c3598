#pragma once

#include "app/menu.h"

#include <QKeySequence>
#include <QMenu>
#include <QObject>

#include <functional>
#include <string>

namespace brisk {

/// The keys shown beside a menu item, none for a key equivalent that names no single key. The key of a window command
/// is the one pressed system-wide, where Command is the Super key; in the program's own shortcuts Command is Ctrl.
QKeySequence shortcutOf(const MenuItem& item);

/// A title as Qt's menus take it, shown to the letter.
QString menuText(const std::string& title);

/// A menu value as a Qt menu. May be given new contents at any time, while it is open and under its own signals, too.
class MenuView : public QObject {
public:
    enum class Shortcuts {
        /// Beside the items only: somebody else carries them out.
        shown,
        /// Pressed in a window with this menu, they choose the item.
        active,
    };
    /// `onChosen` is called on a later turn of the main loop: it may open a dialog, and whoever reported the choice (a
    /// panel waiting for its answer over D-Bus, for one) must not be kept waiting until that closes.
    MenuView(Shortcuts shortcuts, std::function<void(const MenuItem&)> onChosen);

    void setContents(const Menu& contents);
    QMenu& menu() { return menu_; }

private:
    void addItems(const std::vector<MenuItem>& items, QMenu& menu);
    void addItem(const MenuItem& item, QMenu& menu);

    Shortcuts shortcuts_;
    std::function<void(const MenuItem&)> onChosen_;
    Menu contents_;
    QMenu menu_;
};

} // namespace brisk
