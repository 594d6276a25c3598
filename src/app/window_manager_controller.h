#pragma once

#include "app/presentation.h"
#include "drag/window_drag_snap_controller.h"
#include "platform/desktop_services.h"
#include "settings/settings_store.h"
#include "windows/window_manager.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisk {

/// Ties the running program together: turns command identifiers into layouts, chooses whose window they act on, checks
/// the permission, and reports failures. Owns the settings store, the window manager and the drag snap controller. Main
/// thread only. Callbacks that it hands out hold it weakly.
class WindowManagerController : public std::enable_shared_from_this<WindowManagerController> {
public:
    /// Loads the settings, then starts to watch for drags. What is referred to outlives the controller.
    static std::shared_ptr<WindowManagerController> create(const DesktopServices& desktop, Presentation presentation,
                                                           const SettingsFolders& folders);

    /// Carries out the command of a hot key or a menu item on the application the user works in. An unknown identifier
    /// does nothing; while a modal dialog of this program is open every command is ignored.
    void runCommand(const CommandIdentifier& command);

    /// The application in front, unless it is this program.
    RunningApplicationRef frontmostOtherApplication();
    /// The application a command acts on: the one in front, else the last other one seen there that still runs.
    RunningApplicationRef targetApplication();
    /// Applies a layout to the focused window of the application; alerts when that is not permitted or fails.
    void applyTarget(const WindowDragTarget& target, const RunningApplicationRef& application);

    /// Notes the application in front, if that is another than this program; false if not. The status menu asks for it
    /// before it opens: whoever is in front then is whose window its commands mean.
    bool rememberFrontmostApplication();

    /// The settings window, made on first use; the same ever after.
    SettingsWindow& settingsWindowController();
    /// Shows it on that pane, with the program among the applications that the user switches between until it closes.
    void showSettings(SettingsPane pane);
    /// Shows the first-run guide, or brings it to the front. However it ends, it is not shown at the next start.
    void showOnboarding();

    SettingsStore& settingsStore() { return settingsStore_; }
    const SettingsStore& settingsStore() const { return settingsStore_; }
    WindowDragSnapController& dragSnapController() { return *dragSnapController_; }
    const RunningApplicationRef& previousApplication() const { return previousApplication_; }

    /// Called whenever the settings window reports a change.
    std::function<void()> onSettingsChanged;

private:
    WindowManagerController(const DesktopServices& desktop, Presentation presentation, const SettingsFolders& folders);

    void attachDragSnapping();
    void onboardingFinished();
    std::vector<WindowLayout> dragEnabledBuiltInLayouts() const;
    WindowActionResult apply(const WindowDragTarget& target, const RunningApplication& application);

    DesktopServices desktop_;
    Presentation presentation_;
    SettingsStore settingsStore_;
    WindowManager windowManager_;
    std::shared_ptr<WindowDragSnapController> dragSnapController_;
    std::unique_ptr<SettingsWindow> settingsWindowController_;
    std::unique_ptr<OnboardingWindow> onboardingWindowController_;
    RunningApplicationRef previousApplication_;
};

} // namespace brisk
