#include "desktop/controls/controls.h"
#include "desktop/controls/user.h"
#include "program/running_program.h"

namespace brisk::desktop {
namespace {

// A shortcut of the window manager's own that can be seen at work: it moves the active window.
constexpr const char* keyBindings =
    R"(<keybind key="C-A-1"><action name="MoveRelative"><x>10</x><y>0</y></action></keybind>)";

/// Somebody at the recorder of the first layout in the settings.
class Recorder : public RunningProgram {
protected:
    void SetUp() override {
        windowManager_ = std::make_unique<WindowManager>(server_, keyBindings);
        start(controls_.environment());
        const Process again = startAgain();
        user_.window("General — Brisk Settings");
        user_.click("page tab", "Windows");
        settingsWindow_ = user_.window("Windows — Brisk Settings");
    }

    void awaitDescription(const std::string& beginning) {
        user_.await(
            [&] {
                return user_.control("push button", "Window shortcut", "Left Half").description.starts_with(beginning);
            },
            beginning);
    }
    void beginRecording() {
        user_.click("push button", "Window shortcut", "Left Half");
        awaitDescription("Recording");
    }
    int x() { return desktop_.clientRect(settingsWindow_)->x; }

    AccessibilityBus controls_{server_.environment()};
    User user_{desktop_, controls_};
    xcb_window_t settingsWindow_ = XCB_WINDOW_NONE;
};

TEST_F(Recorder, TakesCombinationsThatAreInForce) {
    beginRecording();
    press(Key::left);
    awaitDescription("⌃⌥◀");

    const int start = x();
    press(Key::digit1);
    ASSERT_TRUE(waitUntil([&] { return x() == start + 10; })) << "the window manager's shortcut works";
    beginRecording();
    press(Key::digit1);
    awaitDescription("⌃⌥1");
    // Each is carried out in turn, so what comes after shows what did not come before.
    press(Key::digit1);
    EXPECT_TRUE(waitUntil([&] { return x() >= start + 20; })) << "the keyboard is everybody's again";
    EXPECT_EQ(x(), start + 20);
    EXPECT_EQ(programWindows().size(), 1U) << "no command was run";

    const xcb_window_t window = openWindow();
    press(Key::right);
    EXPECT_TRUE(comesTo(window, rightHalf)) << "the other hot keys are in force again";
}

TEST_F(Recorder, NamesKeysByTheLayoutInForce) {
    constexpr auto keyBesideT = static_cast<Key>(29);
    beginRecording();
    press(keyBesideT);
    awaitDescription("⌃⌥Y");
    Process setxkbmap({"setxkbmap", "de"}, server_.environment());
    ASSERT_TRUE(waitUntil([&] { return !setxkbmap.isRunning(); }));
    ASSERT_EQ(setxkbmap.waitStatus(), 0) << setxkbmap.errors();
    beginRecording();
    press(keyBesideT);
    awaitDescription("⌃⌥Z");
}

} // namespace
} // namespace brisk::desktop
