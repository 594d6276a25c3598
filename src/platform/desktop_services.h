#pragma once

#include "platform/accessibility_platform.h"
#include "platform/global_event_monitor.h"
#include "platform/hot_key_service.h"
#include "platform/main_queue.h"
#include "platform/wall_clock.h"
#include "platform/workspace.h"

namespace brisk {

/// What the logic asks of a desktop, handed on as one. What is referred to outlives whoever holds this.
struct DesktopServices {
    AccessibilityPlatform& accessibility;
    Workspace& workspace;
    HotKeyService& hotKeys;
    GlobalEventMonitor& eventMonitor;
    MainQueue& mainQueue;
    const WallClock& wallClock;
};

} // namespace brisk
