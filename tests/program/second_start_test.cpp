#include "program/running_program.h"

#include <sys/wait.h>

#include <cstdlib>

namespace brisk::desktop {
namespace {

class SecondStart : public RunningProgram {
protected:
    Process startAgain() { return {{BRISK_PROGRAM_PATH}, server_.environment()}; }

    bool comesToFront(const std::string& title) {
        return waitUntil([&] {
            const auto cookie = xcb_get_property(desktop_.xcb(), 0, desktop_.activeWindow(),
                                                 desktop_.atom("_NET_WM_NAME"), XCB_ATOM_ANY, 0, 64);
            const Reply<xcb_get_property_reply_t> reply{xcb_get_property_reply(desktop_.xcb(), cookie, nullptr)};
            return reply && title == std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                                 static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
        });
    }
    /// What the program says when it ends by itself; -1 while it does not.
    static int statusAtEnd(Process& program) {
        if (!waitUntil([&] { return !program.isRunning(); }) || !WIFEXITED(program.waitStatus().value_or(-1))) {
            return -1;
        }
        return WEXITSTATUS(*program.waitStatus());
    }
};

TEST_F(SecondStart, ShowsTheSettingsOfTheFirst) {
    startWindowManager();
    start();
    const xcb_window_t other = openWindow();
    Process again = startAgain();
    EXPECT_EQ(statusAtEnd(again), EXIT_SUCCESS) << again.errors();
    EXPECT_TRUE(comesToFront("General — Brisk Settings"));
    EXPECT_EQ(again.output() + again.errors(), "") << "it asks for none of the keys that the first one has";
    EXPECT_TRUE(program_->isRunning());

    program_->pause();
    Process unanswered = startAgain();
    EXPECT_EQ(statusAtEnd(unanswered), EXIT_FAILURE);
    EXPECT_NE(unanswered.errors(), "") << "and says why";
    program_->resume();

    // Running again, it is brought to the front again, and its main menu works.
    desktop_.requestActivation(other);
    ASSERT_TRUE(waitUntil([&] { return desktop_.activeWindow() == other; }));
    Process third = startAgain();
    EXPECT_EQ(statusAtEnd(third), EXIT_SUCCESS);
    EXPECT_TRUE(comesToFront("General — Brisk Settings"));
    press(static_cast<Key>(24), {Key::leftControl}); // Q
    EXPECT_EQ(statusAtEnd(*program_), EXIT_SUCCESS);
}

} // namespace
} // namespace brisk::desktop
