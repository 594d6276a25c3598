#include "program/running_program.h"

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace brisk::desktop {
namespace {

using namespace std::chrono_literals;

/// What goes wrong in the middle of a command. Afterwards the program runs, and answers the next one.
class CommandFault : public RunningProgram {
protected:
    void SetUp() override {
        startWindowManager();
        start();
    }
    void run(const std::vector<std::string>& command) {
        Process process(command, server_.environment());
        ASSERT_TRUE(waitUntil([&] { return !process.isRunning(); }));
        EXPECT_EQ(process.waitStatus(), 0) << process.errors();
    }
};

TEST_F(CommandFault, TheWindowGoesAtAnyMoment) {
    // A command takes one to three milliseconds.
    for (auto moment = 0us; moment < 4ms; moment += 200us) {
        const xcb_window_t window = openWindow();
        press(Key::left);
        std::this_thread::sleep_for(moment);
        client_.close(window);
    }
    // Before the first request, the key press yet unread.
    const xcb_window_t window = openWindow();
    program_->pause();
    press(Key::left);
    client_.close(window);
    program_->resume();
    expectAnswersTheNextHotKey();
}

TEST_F(CommandFault, AFrozenApplicationIsMovedAndKeepsNobodyWaiting) {
    Process application = startTestClient(server_.environment(), std::array{WindowDescription{}});
    const xcb_window_t window = testClientWindows(application, 1).front();
    ASSERT_TRUE(waitUntil([&] { return desktop_.activeWindow() == window; }));
    application.pause();
    press(Key::left);
    EXPECT_TRUE(comesTo(window, leftHalf));
    expectAnswersTheNextHotKey();
}

TEST_F(CommandFault, TheWindowManagerGoesAndAnotherComes) {
    for (const WindowManagerFault& fault : windowManagerFaults) {
        for (const auto moment : {0us, 700us, 1500us}) {
            SCOPED_TRACE(fault.why);
            const xcb_window_t window = openWindow();
            press(Key::left);
            std::this_thread::sleep_for(moment);
            fault.happensTo(*windowManager_);
            // With nobody there to ask.
            press(Key::right);
            windowManager_->recover();
            expectAnswersTheNextHotKey();
            client_.close(window);
        }
    }
}

TEST_F(CommandFault, TheKeyboardChangesAllTheTime) {
    const xcb_window_t window = openWindow();
    for (int i = 0; i < 5; ++i) {
        for (const char* layout : {"de", "fr", "us"}) {
            run({"setxkbmap", layout});
            press(Key::left);
            run({"xmodmap", "-e", std::string("keycode 248 = ") + layout[0]});
            press(Key::right);
        }
    }
    // In the middle of a press.
    Keyboard keyboard(desktop_);
    for (const Key key : {Key::leftControl, Key::leftAlt, Key::left}) {
        keyboard.down(key);
    }
    run({"setxkbmap", "de"});
    for (const Key key : {Key::left, Key::leftAlt, Key::leftControl}) {
        keyboard.up(key);
    }
    press(Key::right);
    EXPECT_TRUE(comesTo(window, rightHalf)) << *desktop_.visibleFrame(window);
    press(Key::left);
    EXPECT_TRUE(comesTo(window, leftHalf)) << *desktop_.visibleFrame(window);
}

/// Another program holds one of the hot keys at the start.
class HeldHotKey : public RunningProgram {
protected:
    /// By the keys alone: the toolbar comes first, then the gap's field and its stepper.
    void stepGapInSettings() {
        const Process again = startAgain();
        ASSERT_TRUE(focusedDialog()) << "the settings";
        for (const Key key : {Key::right, Key::tab, Key::tab, Key::up}) {
            press(key, {});
        }
        ASSERT_TRUE(waitUntil([&] { return savedSettings().find("\"windowGap\": 1") != std::string::npos; }));
    }

    static constexpr std::uint16_t controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
};

TEST_F(HeldHotKey, WorksOnceItIsFreeAndAnEditRegistersItAnew) {
    startWindowManager();
    auto holder = std::make_unique<DesktopConnection>(server_.display());
    xcb_grab_key(holder->xcb(), 0, holder->root(), controlAlt, static_cast<xcb_keycode_t>(Key::right),
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    holder->synchronize();
    start();
    EXPECT_TRUE(waitUntil([&] { return program_->output().find("Failed to register") != std::string::npos; }));
    const xcb_window_t window = openWindow();
    press(Key::right);
    press(Key::left);
    EXPECT_TRUE(comesTo(window, leftHalf)) << "the others work";

    stepGapInSettings();
    EXPECT_TRUE(program_->isRunning()) << "an edit while it is held";
    holder.reset();
    ASSERT_TRUE(waitUntil([&] { return !isGrabbed(desktop_, Key::right, controlAlt); }));
    press(Key::down, {});
    ASSERT_TRUE(waitUntil([&] { return isGrabbed(desktop_, Key::right, controlAlt); }));
    desktop_.requestActivation(window);
    ASSERT_TRUE(waitUntil([&] { return desktop_.activeWindow() == window; }));
    press(Key::right);
    EXPECT_TRUE(comesTo(window, rightHalf)) << *desktop_.visibleFrame(window);
}

} // namespace
} // namespace brisk::desktop
