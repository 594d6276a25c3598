#pragma once

#include "layouts/custom_layout.h"
#include "layouts/window_layout.h"
#include "platform/accessibility_platform.h"
#include "platform/workspace.h"
#include "windows/restore_history.h"
#include "windows/window_accessibility.h"

#include <functional>
#include <optional>

namespace brisk {

enum class WindowActionResult {
    /// The frame was written and the history updated.
    applied,
    /// The application has no focused window, or its frame cannot be read.
    noWindow,
    /// There is no usable record of where the window was before.
    nothingToRestore,
    /// There is no display, or the window did not accept the frame.
    failed,
};

/// Carries out window commands on an application's focused window and remembers where each window was before. Main
/// thread only. It looks up window, frame and displays anew for every command and does not ask for permission: its
/// callers do.
class WindowManager {
public:
    using RestoreHistory = WindowRestoreHistory<AccessibilityWindowID>;

    explicit WindowManager(AccessibilityPlatform& platform) : platform_(platform), windows_(platform) {}

    /// Puts the focused window where the layout says, or for `restore` where it was before the first layout. `gap` in
    /// points; it is cut to what is allowed by the geometry.
    WindowActionResult applyLayout(WindowLayout layout, const RunningApplication& application, double gap);
    WindowActionResult applyCustomLayout(const CustomWindowLayout& layout, const RunningApplication& application,
                                         double gap);

    /// The focused window's frame in AppKit coordinates.
    std::optional<CGRect> focusedWindowFrame(const RunningApplication& application);

    const RestoreHistory& restoreHistory() const { return restoreHistory_; }

private:
    struct FocusedWindow {
        AccessibilityWindowID id;
        /// Accessibility coordinates.
        CGRect frame;
    };
    /// From the display's usable area and the window's frame, both in AppKit coordinates, to the target frame.
    using Placement = std::function<CGRect(const CGRect& visibleFrame, const CGRect& currentFrame)>;

    std::optional<FocusedWindow> findFocusedWindow(const RunningApplication& application);
    void pruneHistory();
    WindowActionResult place(const RunningApplication& application, const Placement& placement);
    WindowActionResult restore(const RunningApplication& application);

    AccessibilityPlatform& platform_;
    WindowAccessibility windows_;
    RestoreHistory restoreHistory_;
};

} // namespace brisk
