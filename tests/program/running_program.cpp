#include "program/running_program.h"

namespace brisk::desktop {

void RunningProgram::startWindowManager(WindowManager::Kind kind) {
    windowManager_ = std::make_unique<WindowManager>(server_, kind);
}

void RunningProgram::start(const Environment& additions) {
    if (!settings_.empty()) {
        server_.home().write(settingsFile, settings_);
    }
    Environment environment = additions;
    environment.merge(server_.environment());
    program_ = std::make_unique<Process>(std::vector<std::string>{BRISK_PROGRAM_PATH}, environment);
    const auto hasTheHotKeys = [&] { return isGrabbed(desktop_, Key::left, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1); };
    ASSERT_TRUE(waitUntil(hasTheHotKeys)) << program_->errors();
}

xcb_window_t RunningProgram::openWindow(const WindowDescription& description) {
    const xcb_window_t window = client_.open(description);
    EXPECT_TRUE(waitUntil([&] {
        client_.dispatchEvents();
        if (desktop_.isManaged(window) && desktop_.activeWindow() != window) {
            desktop_.requestActivation(window);
        }
        return desktop_.isManaged(window) && desktop_.activeWindow() == window;
    }));
    return window;
}

void RunningProgram::press(Key key, std::initializer_list<Key> modifiers) {
    Keyboard(desktop_).press(key, modifiers);
}

std::vector<xcb_window_t> RunningProgram::programWindows() {
    return desktop_.windowsOf("brisk");
}

std::optional<xcb_window_t> RunningProgram::focusedDialog() {
    std::optional<xcb_window_t> dialog;
    const bool isThere = waitUntil([&] {
        const auto windows = programWindows();
        dialog = windows.size() == 1 && desktop_.activeWindow() == windows.front() ? std::optional(windows.front())
                                                                                   : std::nullopt;
        return dialog.has_value();
    });
    return isThere ? dialog : std::nullopt;
}

void RunningProgram::expectAnswersTheNextHotKey() {
    // Quarters are the same the second time: a command that the fault held back may still come.
    constexpr PixelRect topLeft{.x = 0, .y = 0, .width = 720, .height = 450};
    constexpr PixelRect topRight{.x = 720, .y = 0, .width = 720, .height = 450};
    const xcb_window_t window = openWindow();
    press(Key::u);
    EXPECT_TRUE(waitUntil([&] {
        client_.dispatchEvents();
        // Whatever it had to say of the fault: a press meanwhile is ignored.
        if (!programWindows().empty()) {
            closeDialogs();
            desktop_.requestActivation(window);
            EXPECT_TRUE(waitUntil([&] { return desktop_.activeWindow() == window; }));
            press(Key::u);
        }
        return desktop_.visibleFrame(window) == topLeft;
    })) << *desktop_.visibleFrame(window)
        << program_->errors();
    // Once this one is carried out, none of those before it is left for the next window.
    press(Key::i);
    EXPECT_TRUE(comesTo(window, topRight)) << *desktop_.visibleFrame(window);
    client_.close(window);
    EXPECT_TRUE(waitUntil([&] { return !desktop_.isManaged(window); }));
    EXPECT_TRUE(program_->isRunning());
}

void RunningProgram::closeDialogs() {
    EXPECT_TRUE(waitUntil([&] {
        const auto dialogs = programWindows();
        if (!dialogs.empty() && desktop_.activeWindow() == dialogs.front()) {
            press(Key::escape, {});
        } else if (!dialogs.empty()) {
            desktop_.requestActivation(dialogs.front());
        }
        return dialogs.empty();
    }));
}

bool RunningProgram::comesTo(xcb_window_t window, const PixelRect& frame) {
    return waitUntil([&] {
        client_.dispatchEvents();
        return desktop_.visibleFrame(window) == frame;
    });
}

} // namespace brisk::desktop
