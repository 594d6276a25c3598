#pragma once

#include "app/alert_presenter.h"
#include "app/application.h"
#include "app/status_item.h"
#include "app/window_manager_controller.h"
#include "hotkeys/command_hot_key_registry.h"
#include "platform/desktop_services.h"
#include "platform/updater.h"

#include <functional>
#include <memory>

namespace brisk {

/// What shows the program to the user, made when the delegate asks for it. Main thread only; outlives the delegate.
struct Presentation {
    Application& application;
    AlertPresenter& alerts;
    std::function<std::unique_ptr<StatusItem>(StatusItem::Callbacks)> makeStatusItem;
    std::function<std::unique_ptr<Updater>()> makeUpdater;
    WindowManagerController::MakeOverlay makeOverlay;
};

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

    /// Does what a chosen menu item stands for.
    void perform(const MenuItem& item);

    /// None before launch.
    WindowManagerController* windowController() { return windowController_.get(); }

private:
    Menu menuNeedsUpdate();
    void registerHotKeys();
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
