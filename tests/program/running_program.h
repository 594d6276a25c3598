#pragma once

#include "desktop/support/desktop_connection.h"
#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisk::desktop {

/// What may happen to a window manager at any time.
struct WindowManagerFault {
    const char* why;
    void (*happensTo)(WindowManager& windowManager);
};
inline constexpr std::array windowManagerFaults{
    WindowManagerFault{"killed", [](WindowManager& windowManager) { windowManager.kill(); }},
    WindowManagerFault{"replaced", [](WindowManager& windowManager) { windowManager.replace(); }},
    WindowManagerFault{"frozen", [](WindowManager& windowManager) { windowManager.process().pause(); }},
};

/// A desktop, the program on it, and a person in front of it. Unless told otherwise, the person has been
/// through the first-run guide.
class RunningProgram : public testing::Test {
protected:
    void startWindowManager(WindowManager::Kind kind = WindowManager::Kind::openbox);
    /// Starts the program and waits until it has the hot keys. What is in `additions` joins its environment.
    void start(const Environment& additions = {});
    /// Another copy, which leads to the settings of the one that runs: so they are reached where there is no tray.
    Process startAgain() { return {{BRISK_PROGRAM_PATH}, server_.environment()}; }
    /// Another application's window, managed and active.
    xcb_window_t openWindow(const WindowDescription& description = {});

    void press(Key key, std::initializer_list<Key> modifiers = {Key::leftControl, Key::leftAlt});
    /// The program's windows that can be seen, those docked in a tray included.
    std::vector<xcb_window_t> programWindows();
    /// The program's one dialog, once it has the focus; none when that does not happen.
    std::optional<xcb_window_t> focusedDialog();
    /// Closes what the program has to say, and expects a layout of a new window at its hot key.
    void expectAnswersTheNextHotKey();
    /// The frames of a window in the left and in the right half of the screen.
    static constexpr PixelRect leftHalf{.x = 0, .y = 0, .width = 720, .height = 900};
    static constexpr PixelRect rightHalf{.x = 720, .y = 0, .width = 720, .height = 900};
    bool comesTo(xcb_window_t window, const PixelRect& frame);
    std::string savedSettings() const { return server_.home().read(settingsFile); }

    static constexpr const char* settingsFile = "data/brisk/native-settings.json";
    /// What the program finds in its settings file; empty for its first start, when there is none.
    std::string settings_ = R"({"hasCompletedOnboarding": true})";
    VirtualServer server_;
    DesktopConnection desktop_{server_.display()};
    TestClient client_{server_.display()};
    std::unique_ptr<WindowManager> windowManager_;
    std::unique_ptr<Process> program_;

private:
    void closeDialogs();
};

} // namespace brisk::desktop
