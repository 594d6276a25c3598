#pragma once

#include "platform/main_queue.h"
#include "platform/x11/accessibility.h"
#include "platform/x11/atoms.h"
#include "platform/x11/connection.h"
#include "platform/x11/displays.h"
#include "platform/x11/event_monitor.h"
#include "platform/x11/hot_keys.h"
#include "platform/x11/key_input.h"
#include "platform/x11/native_windows.h"
#include "platform/x11/pointer_look.h"
#include "platform/x11/single_instance.h"
#include "platform/x11/tray_manager.h"
#include "platform/x11/window_manager_peer.h"
#include "platform/x11/window_mover.h"
#include "platform/x11/window_tracker.h"
#include "platform/x11/workspace.h"

#include <functional>
#include <memory>
#include <vector>

namespace brisk::x11 {

/// The X11 desktop: the connections to the server and what the program needs of it. Main thread only.
///
/// The main loop watches the `inputs`, and calls `endTurn` each time before it sleeps.
class Desktop {
public:
    /// Connects to the display named, as the DISPLAY environment variable has it where null; null when that fails.
    /// `explainTrust` is called to tell the user that no window manager is there that can be asked to move windows.
    static std::unique_ptr<Desktop> open(MainQueue& mainQueue, std::function<void()> explainTrust,
                                         const char* display = nullptr);

    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    ~Desktop() = default;

    Connection& connection() { return *connection_; }
    Displays& displays() { return displays_; }
    WindowTracker& windows() { return windowTracker_; }
    AccessibilityPlatform& accessibility() { return accessibility_; }
    brisk::Workspace& workspace() { return workspace_; }
    HotKeyService& hotKeys() { return hotKeys_; }
    brisk::KeyInput& keyInput() { return keyInput_; }
    brisk::NativeWindows& nativeWindows() { return nativeWindows_; }
    GlobalEventMonitor& eventMonitor() { return eventMonitor_; }
    brisk::SingleInstance& singleInstance() { return singleInstance_; }
    SystemTray& systemTray() { return trayManager_; }

    /// One of the connections: `read`, called when the descriptor is readable, takes in what the server has said.
    struct Input {
        int fileDescriptor;
        std::function<void()> read;
    };
    /// As long as the desktop is there.
    std::vector<Input> inputs();
    /// True once the server is gone, and nothing works any more.
    bool isBroken() const;

    /// Takes in what came along with replies, which the descriptor does not announce any more, sends what was held back
    /// in this turn, and flushes.
    void endTurn();

private:
    Desktop(std::unique_ptr<Connection> connection, std::unique_ptr<PointerLook> pointerLook, MainQueue& mainQueue,
            std::function<void()> explainTrust);

    std::unique_ptr<Connection> connection_;
    std::unique_ptr<PointerLook> pointerLook_;
    Atoms atoms_;
    WindowManagerPeer windowManager_;
    WindowTracker windowTracker_;
    Displays displays_;
    WindowMover windowMover_;
    Accessibility accessibility_;
    Workspace workspace_;
    HotKeys hotKeys_;
    KeyInput keyInput_;
    NativeWindows nativeWindows_;
    EventMonitor eventMonitor_;
    SingleInstance singleInstance_;
    TrayManager trayManager_;
};

} // namespace brisk::x11
