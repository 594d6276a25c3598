#pragma once

#include "app/menu.h"
#include "app/presentation.h"
#include "app/window_manager_controller.h"
#include "hotkeys/command_hot_key_registry.h"
#include "platform/desktop_services.h"

#include <memory>

namespace brisk {

/// The program's beginning and end, its status item, and the road from a hot key or menu item to the controller. Main
/// thread only; held by a shared pointer, since what it starts refers to it weakly.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
public:
    AppDelegate(const DesktopServices& desktop, Presentation presentation, SettingsFolders folders);

    /// Starts everything, in an order that matters: the status item is there before the settings are read.
    void applicationDidFinishLaunching();
    /// Stops watching the mouse, then waits until every save submitted so far is written.
    void applicationWillTerminate();
    /// Closing a window never ends the program.
    static constexpr bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

    /// Opens the settings window, on the last configuration pane or on About. Nothing happens before launch, nor while
    /// a modal dialog of ours is open.
    void showSettings();
    void showAbout();
    /// Does what a chosen menu item stands for.
    void perform(const MenuItem& item);

    /// None before launch.
    WindowManagerController* windowController() { return windowController_.get(); }

private:
    bool mayShowSettings() const;
    Menu menuNeedsUpdate();
    void registerHotKeys();
    void leadIntoFirstRun();
    void settingsChanged();
    void runCommandLater(const CommandIdentifier& command);

    DesktopServices desktop_;
    Presentation presentation_;
    SettingsFolders folders_;
    std::shared_ptr<WindowManagerController> windowController_;
    std::unique_ptr<CommandHotKeyRegistry> commandHotKeys_;
    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<Updater> updater_;
};

} // namespace brisk
