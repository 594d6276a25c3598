#pragma once

#include "platform/desktop_services.h"
#include "platform/simulated/accessibility.h"
#include "platform/simulated/application.h"
#include "platform/simulated/call_log.h"
#include "platform/simulated/event_monitor.h"
#include "platform/simulated/hot_keys.h"
#include "platform/simulated/key_input.h"
#include "platform/simulated/main_queue.h"
#include "platform/simulated/wall_clock.h"
#include "platform/simulated/workspace.h"

#include <optional>
#include <string>
#include <vector>

namespace brisk::simulated {

/// A whole desktop without an operating system: deterministic, moved only by the scenario that owns it. One display of
/// 1440 × 900 points with a menu bar of 25 to begin with.
class Desktop {
public:
    static constexpr ProcessIdentifier ownProcess = 1;

    Desktop();

    /// Starts an application; it has no windows and is not in front.
    ApplicationRef launch(std::optional<std::string> name);
    /// Opens a window in front of the application's others; accessibility coordinates.
    static WindowRef openWindow(const ApplicationRef& application, const CGRect& frame);
    /// Starts an application with one window and brings it to the front.
    ApplicationRef launchInFront(std::optional<std::string> name, const CGRect& frame);

    /// All of it, as the program takes it.
    DesktopServices services() { return {accessibility, workspace, hotKeys, eventMonitor, mainQueue, wallClock}; }

    /// Declared first: the services record into it and read the applications.
    CallLog log;
    std::vector<ApplicationRef> applications;

    Accessibility accessibility{log, applications};
    Workspace workspace{log, ownProcess};
    HotKeys hotKeys{log};
    KeyInput keyInput{log};
    EventMonitor eventMonitor{log};
    MainQueue mainQueue;
    WallClock wallClock;

private:
    ProcessIdentifier lastProcess_ = 100;
};

} // namespace brisk::simulated
