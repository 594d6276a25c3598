#pragma once

#include "desktop/support/desktop_connection.h"
#include "desktop/support/input.h"
#include "desktop/support/process.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/window_manager.h"
#include "soak/resource_use.h"

#include <functional>
#include <optional>
#include <string>

namespace brisk::desktop {

/// The program on a desktop with a window of another application, and a person who never tires. What does not come
/// throws `std::runtime_error`.
class Scene {
public:
    static constexpr PixelSize screenSize{.width = 1440, .height = 900};
    static constexpr PixelRect leftHalf{.x = 0, .y = 0, .width = 720, .height = 900};
    static constexpr PixelRect rightHalf{.x = 720, .y = 0, .width = 720, .height = 900};

    explicit Scene(const std::string& program, const std::string& settings);

    double startMilliseconds() const { return startMilliseconds_; }
    /// Once it stays the same for a second: a window that was just opened goes on growing by itself.
    ResourceUse useAtRest();

    void snapToAndFro(int count);
    /// Drops the window on a zone, with zones shown on the way; milliseconds until those were there.
    double dragOnce(const PixelRect& zone);

    /// A second start brings the settings to the front; milliseconds until then.
    double showSettings();
    /// Brings the keys to the stepper of the gap; the first edit tells that the pane is there.
    void showWindowsPane();
    /// Steps the gap up and down again, each a save and every hot key registered anew; milliseconds a step.
    double edit(int count);
    void closeSettings();

    struct MenuTimes {
        double menu = 0;
        double customLayouts = 0;
    };
    /// Has a panel with a tray, opens the menu there and chooses the first of the custom layouts; milliseconds until
    /// each menu was there.
    MenuTimes chooseFirstCustomLayout(const PixelRect& frame);

private:
    void await(const std::string& what, const std::function<bool()>& condition);
    double timed(const std::string& what, const std::function<bool()>& condition);
    void snap(Key key, const PixelRect& frame);
    std::vector<xcb_window_t> ownWindows() { return desktop_.windowsOf("brisk"); }
    bool isOverlayShown();

    std::string program_;
    VirtualServer server_{screenSize};
    WindowManager windowManager_{server_, WindowManager::Kind::openbox};
    DesktopConnection desktop_{server_.display()};
    Keyboard keyboard_{desktop_};
    Pointer pointer_{desktop_};
    TestClient client_{server_.display()};
    std::optional<Process> brisk_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    double startMilliseconds_ = 0;
};

} // namespace brisk::desktop
