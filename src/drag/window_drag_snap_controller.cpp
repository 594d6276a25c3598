#include "drag/window_drag_snap_controller.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brisk {

namespace {

bool isShiftHeld(NSEventModifierFlags flags) {
    return (flags & NSEventModifierFlagShift) != 0;
}

bool hasResized(const CGRect& from, const CGRect& to) {
    return std::abs(to.width() - from.width()) > WindowDragSnapController::moveThreshold ||
           std::abs(to.height() - from.height()) > WindowDragSnapController::moveThreshold;
}

/// How far the window would have to go back to count as not moved; not positive while it counts so.
double distanceMoved(const CGRect& from, const CGRect& to) {
    return std::max(std::abs(to.minX() - from.minX()), std::abs(to.minY() - from.minY())) -
           WindowDragSnapController::moveThreshold;
}

} // namespace

WindowDragSnapController::WindowDragSnapController(WindowManager& windowManager, AccessibilityPlatform& accessibility,
                                                   GlobalEventMonitor& eventMonitor, MainQueue& mainQueue,
                                                   Callbacks callbacks)
    : windowManager_(windowManager),
      accessibility_(accessibility),
      eventMonitor_(eventMonitor),
      mainQueue_(mainQueue),
      callbacks_(std::move(callbacks)) {}

void WindowDragSnapController::start() {
    if (monitor_) {
        return;
    }
    constexpr NSEventMask mask =
        maskOf(NSEventType::leftMouseDown) | maskOf(NSEventType::leftMouseUp) | maskOf(NSEventType::leftMouseDragged);
    monitor_ = eventMonitor_.addGlobalMonitorForEventsMatchingMask(
        mask, [weak = weak_from_this(), &queue = mainQueue_](NSEventType type, NSEventModifierFlags flags) {
            // Only noted here, inside the platform's own handler; worked on in a turn of the main queue.
            queue.async([weak, type, flags = flags & NSEventModifierFlagDeviceIndependentFlagsMask] {
                if (const auto self = weak.lock()) {
                    self->handleEvent(type, flags);
                }
            });
        });
}

void WindowDragSnapController::stop() {
    if (monitor_) {
        eventMonitor_.removeMonitor(*monitor_);
        monitor_.reset();
    }
    dropGesture();
}

void WindowDragSnapController::handleEvent(NSEventType type, NSEventModifierFlags flags) {
    switch (type) {
    case NSEventType::leftMouseDown:
        handleMouseDown();
        break;
    case NSEventType::leftMouseDragged:
        handleMouseDragged(flags, eventMonitor_.mouseLocation());
        break;
    case NSEventType::leftMouseUp:
        handleMouseUp(flags);
        break;
    }
}

void WindowDragSnapController::handleMouseDown() {
    dropGesture();
    dragState_ = newGesture();
    if (!dragState_) {
        eventMonitor_.ignoreRestOfPress();
    }
}

std::optional<WindowDragSnapController::DragState> WindowDragSnapController::newGesture() const {
    const auto builtIn = callbacks_.builtInLayoutsProvider();
    const auto custom = callbacks_.customLayoutsProvider();
    if (!accessibility_.AXIsProcessTrusted()) {
        return std::nullopt;
    }
    if (builtIn.empty() && std::ranges::none_of(custom, &CustomWindowLayout::isAvailableForDragging)) {
        return std::nullopt;
    }
    RunningApplicationRef app = callbacks_.appProvider();
    if (!app) {
        return std::nullopt;
    }
    const auto frame = windowManager_.focusedWindowFrame(*app);
    if (!frame) {
        return std::nullopt;
    }
    return DragState{.app = std::move(app), .initialFrame = *frame};
}

void WindowDragSnapController::handleMouseDragged(NSEventModifierFlags flags, CGPoint pointer) {
    if (!dragState_) {
        return;
    }
    if (!isShiftHeld(flags)) {
        dragState_->selectedTarget.reset();
        hideOverlay();
        eventMonitor_.ignoreMotionWithin(CGRectInfinite);
        return;
    }
    const auto current = windowManager_.focusedWindowFrame(*dragState_->app);
    if (!current || hasResized(dragState_->initialFrame, *current)) {
        dropGesture();
        eventMonitor_.ignoreRestOfPress();
        return;
    }
    const double moved = distanceMoved(dragState_->initialFrame, *current);
    if (moved <= 0) {
        hideOverlay();
        return;
    }
    const auto screen = screenContainingPoint(pointer, accessibility_.screens());
    if (!screen) {
        hideOverlay();
        return;
    }
    const double gap = callbacks_.gapProvider();
    const auto builtIn = callbacks_.builtInLayoutsProvider();
    const auto targets = dragTargets(builtIn, callbacks_.customLayoutsProvider());
    const auto zones = buildZones(targets, screen->visibleFrame, gap, *current);
    dragState_->isMoving = true;
    dragState_->selectedTarget = targetAtPoint(zones, pointer);

    if (!overlay_) {
        overlay_ = callbacks_.makeOverlay();
    }
    std::optional<CommandIdentifier> active;
    if (dragState_->selectedTarget) {
        active = commandIdentifier(*dragState_->selectedTarget);
    }
    overlay_->show(zones, active, *screen);
    // The window goes with the pointer, and back where it started it shows no zones.
    eventMonitor_.ignoreMotionWithin(regionAroundPoint(zones, screen->frame, pointer, moved));
}

void WindowDragSnapController::handleMouseUp(NSEventModifierFlags flags) {
    const auto previous = std::exchange(dragState_, std::nullopt);
    hideOverlay();
    if (isShiftHeld(flags) && previous && previous->isMoving && previous->selectedTarget) {
        callbacks_.onSnap(*previous->selectedTarget, previous->app);
    }
}

void WindowDragSnapController::hideOverlay() {
    if (overlay_) {
        overlay_->hide();
    }
}

void WindowDragSnapController::dropGesture() {
    dragState_.reset();
    hideOverlay();
}

} // namespace brisk
