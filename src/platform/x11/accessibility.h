#pragma once

#include "platform/accessibility_platform.h"
#include "platform/main_queue.h"
#include "platform/x11/displays.h"
#include "platform/x11/window_manager_peer.h"
#include "platform/x11/window_mover.h"
#include "platform/x11/window_tracker.h"

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace brisk::x11 {

/// Window access on X11. The desktop's trust in this process is that there is somebody to ask: a window manager that
/// speaks the Extended Window Manager Hints.
class Accessibility final : public AccessibilityPlatform {
public:
    /// `explainTrust` tells the user that there is no such window manager; called from the queue, never from within a
    /// trust check.
    Accessibility(MainQueue& mainQueue, WindowManagerPeer& windowManager, WindowTracker& tracker, Displays& displays,
                  WindowMover& mover, std::function<void()> explainTrust);
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;
    ~Accessibility() override;

    AXUIElementRef AXUIElementCreateApplication(ProcessIdentifier processIdentifier) override;
    AXAttributeValue AXUIElementCopyAttributeValue(const AXUIElementRef& element, std::string_view attribute) override;
    AXError AXUIElementSetAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                         const AXValue& value) override;
    std::optional<AXValue> AXValueCreate(CGPoint point) override;
    std::optional<AXValue> AXValueCreate(CGSize size) override;
    bool AXIsProcessTrusted() override;
    bool AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt prompt) override;
    std::vector<ScreenInfo> screens() override;

    /// What was read in this turn of the main loop counts as out of date from now on.
    void endTurn() { sizeReadAlong_.reset(); }

private:
    AXAttributeValue copyApplicationAttribute(const ProcessIdentity& process, std::string_view attribute);
    AXAttributeValue copyWindowAttribute(const WindowRef& window, std::string_view attribute);
    AXAttributeValue copyFrameAttribute(const WindowRef& window, std::string_view attribute);
    void prompt();

    MainQueue& mainQueue_;
    WindowManagerPeer& windowManager_;
    WindowTracker& tracker_;
    Displays& displays_;
    WindowMover& mover_;
    std::function<void()> explainTrust_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    DispatchWorkItemRef pendingPrompt_;
    /// The size that came with the position read last, for the size read that follows: both are then of one moment.
    std::optional<std::pair<WindowRef, CGSize>> sizeReadAlong_;
};

} // namespace brisk::x11
