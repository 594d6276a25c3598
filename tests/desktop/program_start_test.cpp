#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

namespace brisk::desktop {
namespace {

/// The program itself on a desktop on which it never ran, and a person in front of it.
class ProgramStartTest : public testing::Test {
protected:
    Process startProgram() { return {{BRISK_PROGRAM_PATH}, server.environment()}; }

    std::string activeTitle() {
        const auto cookie = xcb_get_property(desktop.xcb(), 0, desktop.activeWindow(), desktop.atom("_NET_WM_NAME"),
                                             XCB_ATOM_ANY, 0, 64);
        const Reply<xcb_get_property_reply_t> reply{xcb_get_property_reply(desktop.xcb(), cookie, nullptr)};
        return reply ? std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                   static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))
                     : std::string();
    }
    /// Whether a copy has become the one that runs: started side by side, either may.
    bool isRunning() {
        const auto cookie = xcb_get_selection_owner(desktop.xcb(), desktop.atom("_BRISK_INSTANCE_S0"));
        const Reply<xcb_get_selection_owner_reply_t> reply{
            xcb_get_selection_owner_reply(desktop.xcb(), cookie, nullptr)};
        return reply && reply->owner != XCB_WINDOW_NONE;
    }
    bool comesToFront(const std::string& title) {
        return waitUntil([&] { return activeTitle() == title; });
    }
    std::string settingsFile() {
        std::ifstream file(server.home().path() + "/data/brisk/native-settings.json");
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// What the program says when it ends by itself; -1 while it does not.
    static int statusAtEnd(Process& program) {
        if (!waitUntil([&] { return !program.isRunning(); }) || !WIFEXITED(program.waitStatus().value_or(-1))) {
            return -1;
        }
        return WEXITSTATUS(*program.waitStatus());
    }

    VirtualServer server;
    WindowManager windowManager{server, WindowManager::Kind::openbox};
    DesktopConnection desktop{server.display()};
    Keyboard keyboard{desktop};
};

TEST_F(ProgramStartTest, TheGuideComesOnceAndASecondStartShowsTheSettings) {
    {
        Process first = startProgram();
        ASSERT_TRUE(comesToFront("Welcome to Brisk")) << first.errors();
        keyboard.press(Key::returnKey);
        // The permission is there, with a window manager, so the guide goes on by itself.
        ASSERT_TRUE(comesToFront("You're Set"));
        keyboard.press(Key::returnKey);
        EXPECT_TRUE(
            waitUntil([&] { return settingsFile().find("\"hasCompletedOnboarding\": true") != std::string::npos; }));
        first.signal(SIGTERM);
        EXPECT_EQ(statusAtEnd(first), EXIT_SUCCESS);
    }

    Process program = startProgram();
    ASSERT_TRUE(waitUntil([&] { return isRunning(); }));
    TestClient client(server.display());
    const xcb_window_t other = client.open();
    ASSERT_TRUE(waitUntil([&] { return desktop.activeWindow() == other; }));
    Process again = startProgram();
    EXPECT_EQ(statusAtEnd(again), EXIT_SUCCESS) << again.errors();
    EXPECT_TRUE(comesToFront("General — Brisk Settings"));
    EXPECT_EQ(again.output() + again.errors(), "") << "it asks for none of the keys that the first one has";
    EXPECT_TRUE(program.isRunning());

    program.pause();
    Process unanswered = startProgram();
    EXPECT_EQ(statusAtEnd(unanswered), EXIT_FAILURE);
    EXPECT_NE(unanswered.errors(), "") << "and says why";
    program.resume();

    // Running again, it is brought to the front again, and its main menu works.
    desktop.requestActivation(other);
    ASSERT_TRUE(waitUntil([&] { return desktop.activeWindow() == other; }));
    Process third = startProgram();
    EXPECT_EQ(statusAtEnd(third), EXIT_SUCCESS);
    EXPECT_TRUE(comesToFront("General — Brisk Settings"));
    keyboard.press(static_cast<Key>(24), {Key::leftControl}); // Q
    EXPECT_EQ(statusAtEnd(program), EXIT_SUCCESS);
}

} // namespace
} // namespace brisk::desktop
