#pragma once

#include "program/running_program.h"

#include <optional>

namespace brisk::desktop {

/// The program with the two halves as drop zones, a window, and a person at the mouse.
class RunningDrag : public RunningProgram {
protected:
    void startWithWindow(WindowManager::Kind kind);
    /// While the other application answers what it is asked.
    bool wait(const std::function<bool()>& condition);
    void putAt(xcb_window_t window, const PixelRect& frame);
    /// Where the window is once nobody has moved it for a while.
    std::optional<PixelRect> frameAtRest(xcb_window_t window);

    /// Takes the window by its title bar and moves it a little, until it follows.
    void takeByTitle(xcb_window_t window);
    /// Presses Shift and drags on until the zones are there.
    void pressShift();
    void dragTo(int x, int y);
    /// The program's window that shows the zones, which covers a whole display, as long as it is on the screen.
    std::optional<PixelRect> overlay();
    bool isOverlayShown() { return overlay().has_value(); }

    static constexpr PixelRect startFrame{.x = 500, .y = 300, .width = 400, .height = 300};
    Keyboard keyboard_{desktop_};
    Pointer pointer_{desktop_};
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

} // namespace brisk::desktop
