#pragma once

#include "drag/drag_overlay.h"
#include "drag/drag_target.h"
#include "platform/accessibility_platform.h"
#include "platform/global_event_monitor.h"
#include "platform/main_queue.h"
#include "platform/workspace.h"
#include "windows/window_manager.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brisk {

/// Follows one drag of another application's window at a time and says where it was dropped. A gesture starts at any
/// press of the left button; whether it moves a window is told by that window's own frame, and Shift held during it
/// shows the zones. Main thread only; moves no window itself. Silent: a gesture that cannot be followed is an ordinary
/// drag.
class WindowDragSnapController : public std::enable_shared_from_this<WindowDragSnapController> {
public:
    /// A frame that differs by more than this, in points, has moved or has been resized.
    static constexpr double moveThreshold = 2.0;

    /// What the owner supplies. The providers are asked anew at every press and drag, so that settings act at once;
    /// like `onSnap`, they must not keep the owner alive.
    struct Callbacks {
        /// The application whose focused window a drag would move; null for none.
        std::function<RunningApplicationRef()> appProvider;
        /// The built-in layouts that are drop zones, in the order of their declaration.
        std::function<std::vector<WindowLayout>()> builtInLayoutsProvider;
        /// All custom layouts, in stored order.
        std::function<std::vector<CustomWindowLayout>()> customLayoutsProvider;
        /// The gap in points.
        std::function<double()> gapProvider;
        /// A window of that application was dropped on that target; the overlay is hidden by then.
        std::function<void(const WindowDragTarget&, const RunningApplicationRef&)> onSnap;
        /// Makes the overlay at the first drag that shows zones; it is then kept.
        std::function<std::unique_ptr<WindowDragOverlay>()> makeOverlay;
    };

    /// The references outlive the controller. Nothing is watched before `start`.
    WindowDragSnapController(WindowManager& windowManager, AccessibilityPlatform& accessibility,
                             GlobalEventMonitor& eventMonitor, MainQueue& mainQueue, Callbacks callbacks);

    /// Watches the mouse, unless it does already. Where the platform refuses, drags never snap.
    void start();
    /// Stops watching, drops the gesture and hides the overlay.
    void stop();

    /// The gesture's events, as the monitor reports them; the pointer in AppKit coordinates.
    void handleMouseDown();
    void handleMouseDragged(NSEventModifierFlags flags, CGPoint pointer);
    void handleMouseUp(NSEventModifierFlags flags);

private:
    struct DragState {
        RunningApplicationRef app;
        /// The window's frame when the button went down, AppKit coordinates; never updated.
        CGRect initialFrame;
        /// Whether the window was once seen moved while zones were shown.
        bool isMoving = false;
        /// The zone under the pointer at the last drag event with Shift.
        std::optional<WindowDragTarget> selectedTarget;
    };

    void handleEvent(NSEventType type, NSEventModifierFlags flags);
    std::optional<DragState> newGesture() const;
    void hideOverlay();
    void dropGesture();

    WindowManager& windowManager_;
    AccessibilityPlatform& accessibility_;
    GlobalEventMonitor& eventMonitor_;
    MainQueue& mainQueue_;
    Callbacks callbacks_;
    std::unique_ptr<WindowDragOverlay> overlay_;
    std::optional<GlobalEventMonitor::Token> monitor_;
    std::optional<DragState> dragState_;
};

} // namespace brisk
