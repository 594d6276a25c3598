#include "desktop/support/input.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace brisk::desktop {
namespace {

// A shortcut of the window manager's own that can be seen at work: it moves the active window.
constexpr const char* keyBindings =
    R"(<keybind key="C-A-Right"><action name="MoveRelative"><x>10</x><y>0</y></action></keybind>)";

/// The recorder of the product in a window on a desktop of its own, and a person at the keyboard.
class Recorder : public testing::Test {
protected:
    void SetUp() override {
        if (!isInstalled("openbox")) {
            GTEST_SKIP() << "openbox is not installed";
        }
        windowManager_ = std::make_unique<WindowManager>(server_, keyBindings);
        desktop_ = std::make_unique<DesktopConnection>(server_.display());
        program_ =
            std::make_unique<Process>(std::vector<std::string>{BRISK_RECORDER_PROGRAM_PATH}, server_.environment());
        ASSERT_TRUE(waitUntil([&] { return count("window") == 1; })) << program_->errors();
        std::string word;
        std::istringstream(lines().front()) >> word >> window_ >> centreX_ >> centreY_;
        ASSERT_TRUE(waitUntil([&] { return desktop_->isManaged(window_) && desktop_->activeWindow() == window_; }));
    }

    std::vector<std::string> lines() const {
        std::vector<std::string> result;
        std::istringstream output(program_->output());
        for (std::string line; std::getline(output, line);) {
            result.push_back(line);
        }
        return result;
    }
    std::ptrdiff_t count(const std::string& beginning) const {
        const auto all = lines();
        return std::ranges::count_if(all, [&](const std::string& line) { return line.starts_with(beginning); });
    }
    bool says(const std::string& line) const {
        return waitUntil([&] { return std::ranges::count(lines(), line) == 1; });
    }
    int x() { return desktop_->clientRect(window_)->x; }

    void press(Key key, std::initializer_list<Key> modifiers = {Key::leftControl, Key::leftAlt}) {
        Keyboard(*desktop_).press(key, modifiers);
    }
    /// Whether nobody has grabbed it. The shortcuts of all are in force then.
    bool keyboardIsFree() {
        xcb_connection_t* const xcb = desktop_->xcb();
        const auto cookie =
            xcb_grab_keyboard(xcb, 0, desktop_->root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const Reply<xcb_grab_keyboard_reply_t> reply{xcb_grab_keyboard_reply(xcb, cookie, nullptr)};
        xcb_ungrab_keyboard(xcb, XCB_CURRENT_TIME);
        desktop_->synchronize();
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }
    /// Clicks the recorder and waits until it records.
    bool beginRecording() {
        const auto before = count("recording");
        const PixelRect client = *desktop_->clientRect(window_);
        Pointer pointer(*desktop_);
        pointer.moveTo(client.x + centreX_, client.y + centreY_);
        pointer.down();
        pointer.up();
        return waitUntil([&] { return count("recording") == before + 1; });
    }

    VirtualServer server_;

private:
    std::unique_ptr<WindowManager> windowManager_;
    std::unique_ptr<DesktopConnection> desktop_;
    std::unique_ptr<Process> program_;
    xcb_window_t window_ = 0;
    int centreX_ = 0;
    int centreY_ = 0;
};

TEST_F(Recorder, TakesCombinationsThatAreInForce) {
    const int start = x();
    press(Key::left);
    ASSERT_TRUE(waitUntil([&] { return count("hot key") == 1; })) << "a hot key of the program's own works";
    press(Key::right);
    ASSERT_TRUE(waitUntil([&] { return x() == start + 10; })) << "so does the window manager's shortcut";

    ASSERT_TRUE(beginRecording());
    EXPECT_FALSE(keyboardIsFree());
    press(Key::left);
    EXPECT_TRUE(says("recorded 123 ⌃⌥◀"));
    ASSERT_TRUE(beginRecording());
    press(Key::right);
    EXPECT_TRUE(says("recorded 124 ⌃⌥▶"));

    ASSERT_TRUE(waitUntil([&] { return keyboardIsFree(); }));
    // Each is carried out in turn, so what comes after shows what did not come before.
    press(Key::left);
    EXPECT_TRUE(waitUntil([&] { return count("hot key") >= 2; })) << "in force again";
    EXPECT_EQ(count("hot key"), 2);
    press(Key::right);
    EXPECT_TRUE(waitUntil([&] { return x() >= start + 20; })) << "the keyboard is everybody's again";
    EXPECT_EQ(x(), start + 20);
}

TEST_F(Recorder, NamesKeysByTheLayoutInForce) {
    constexpr auto keyBesideT = static_cast<Key>(29);
    ASSERT_TRUE(beginRecording());
    press(keyBesideT);
    EXPECT_TRUE(says("recorded 16 ⌃⌥Y"));
    Process setxkbmap({"setxkbmap", "de"}, server_.environment());
    ASSERT_TRUE(waitUntil([&] { return !setxkbmap.isRunning(); }));
    ASSERT_EQ(setxkbmap.waitStatus(), 0) << setxkbmap.errors();
    ASSERT_TRUE(beginRecording());
    press(keyBesideT);
    EXPECT_TRUE(says("recorded 16 ⌃⌥Z"));
}

} // namespace
} // namespace brisk::desktop
