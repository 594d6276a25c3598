#pragma once

#include "drag/drag_overlay.h"
#include "geometry/rectangle.h"
#include "platform/native_windows.h"
#include "ui/drag_overlay_view.h"

#include <QTimer>

namespace brisk {

/// The overlay as a panel of the desktop: it covers exactly one display, lies above everything, and neither focus nor
/// clicks stop at it. It stays out of the window manager's care, which would keep it below windows in full screen.
class WindowDragOverlayController final : public WindowDragOverlay {
public:
    /// `nativeWindows` outlives the overlay, which takes its compositing handler.
    explicit WindowDragOverlayController(NativeWindows& nativeWindows);
    WindowDragOverlayController(const WindowDragOverlayController&) = delete;
    WindowDragOverlayController& operator=(const WindowDragOverlayController&) = delete;
    ~WindowDragOverlayController() override;

    void show(const std::vector<WindowDragZone>& zones, const std::optional<CommandIdentifier>& active,
              const ScreenInfo& screen) override;
    void hide() override;

    /// Makes the native panel and loads the label's font now, unseen, so that the first show is as quick as the others.
    void warmUp();

private:
    NativeWindowID panel();
    OverlaySurface surface();
    void updateSurface();
    void updateShape();

    NativeWindows& nativeWindows_;
    WindowDragOverlayView view_;
    /// Puts what the platform tells in the middle of a call off to the next turn of the loop.
    QTimer compositingChange_;
    bool isPanelMade_ = false;
    bool isShown_ = false;
    /// Whether the panel has a shape other than its rectangle.
    bool isCutOut_ = false;
    /// What is shown.
    std::vector<WindowDragZone> zones_;
    std::optional<CommandIdentifier> active_;
    CGRect frame_;
};

} // namespace brisk
