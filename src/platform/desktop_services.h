#pragma once

#include "platform/accessibility_platform.h"
#include "platform/global_event_monitor.h"
#include "platform/hot_key_service.h"
#include "platform/key_input.h"
#include "platform/main_queue.h"
#include "platform/wall_clock.h"
#include "platform/workspace.h"

namespace brisk {

/// Everything the program asks of a desktop, handed on as one. What is referred to outlives whoever holds this.
struct DesktopServices {
    AccessibilityPlatform& accessibility;
    Workspace& workspace;
    HotKeyService& hotKeys;
    KeyInput& keyInput;
    GlobalEventMonitor& eventMonitor;
    MainQueue& mainQueue;
    const WallClock& wallClock;
};

} // namespace brisk
