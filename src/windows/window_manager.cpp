#include "windows/window_manager.h"

namespace brisk {

WindowActionResult WindowManager::applyLayout(WindowLayout layout, const RunningApplication& application, double gap) {
    if (layout == WindowLayout::restore) {
        return restore(application);
    }
    return place(application, [&](const CGRect& visibleFrame, const CGRect& currentFrame) {
        return layoutFrame(layout, visibleFrame, currentFrame, gap);
    });
}

WindowActionResult WindowManager::applyCustomLayout(const CustomWindowLayout& layout,
                                                    const RunningApplication& application, double gap) {
    return place(application, [&](const CGRect& visibleFrame, const CGRect&) {
        return gridFrame(layout.selection, visibleFrame, gap);
    });
}

std::optional<CGRect> WindowManager::focusedWindowFrame(const RunningApplication& application) {
    const auto window = findFocusedWindow(application);
    if (!window) {
        return std::nullopt;
    }
    const auto screens = platform_.screens();
    if (screens.empty()) {
        return std::nullopt;
    }
    return toAppKitFrame(window->frame, screens.front().frame);
}

std::optional<WindowManager::FocusedWindow> WindowManager::findFocusedWindow(const RunningApplication& application) {
    const auto element = platform_.AXUIElementCreateApplication(application.processIdentifier());
    const auto window = windows_.focusedWindow(element);
    if (!window) {
        return std::nullopt;
    }
    const auto frame = windows_.readFrame(*window);
    if (!frame) {
        return std::nullopt;
    }
    return FocusedWindow{.id = {*window}, .frame = *frame};
}

void WindowManager::pruneHistory() {
    restoreHistory_.removeRecords([&](const AccessibilityWindowID& id) { return windows_.isInvalid(id.element); });
}

WindowActionResult WindowManager::place(const RunningApplication& application, const Placement& placement) {
    const auto window = findFocusedWindow(application);
    if (!window) {
        return WindowActionResult::noWindow;
    }
    pruneHistory();

    const auto screens = platform_.screens();
    if (screens.empty()) {
        return WindowActionResult::failed;
    }
    const CGRect primaryFrame = screens.front().frame;
    const CGRect currentFrame = toAppKitFrame(window->frame, primaryFrame);
    const auto screen = screenContaining(currentFrame, screens);
    if (!screen) {
        return WindowActionResult::failed;
    }
    const CGRect target = toAccessibilityFrame(placement(screen->visibleFrame, currentFrame), primaryFrame);

    const CGRect originalFrame = restoreHistory_.originalFrameForApplying(window->id, window->frame);
    if (!windows_.writeFrame(window->id.element, target)) {
        return WindowActionResult::failed;
    }
    // What the window made of it: an application may refuse a size below its minimum, and the next command compares
    // with the frame that it really has.
    const CGRect reached = windows_.readFrame(window->id.element).value_or(target);
    restoreHistory_.store(window->id, {.originalFrame = originalFrame, .lastAppliedFrame = reached});
    return WindowActionResult::applied;
}

WindowActionResult WindowManager::restore(const RunningApplication& application) {
    const auto window = findFocusedWindow(application);
    if (!window) {
        return WindowActionResult::noWindow;
    }
    pruneHistory();

    const auto frame = restoreHistory_.restoreFrame(window->id, window->frame);
    if (!frame) {
        return WindowActionResult::nothingToRestore;
    }
    if (!windows_.writeFrame(window->id.element, *frame)) {
        return WindowActionResult::failed;
    }
    restoreHistory_.removeRecord(window->id);
    return WindowActionResult::applied;
}

} // namespace brisk
