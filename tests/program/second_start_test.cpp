#include "program/running_program.h"

#include <sys/wait.h>

#include <cstdlib>

namespace brisk::desktop {
namespace {

class SecondStart : public RunningProgram {
protected:
    bool comesToFront(const std::string& title) {
        return waitUntil([&] { return desktop_.title(desktop_.activeWindow()) == title; });
    }
    bool bringToFront(xcb_window_t window) {
        desktop_.requestActivation(window);
        return waitUntil([&] { return desktop_.activeWindow() == window; });
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

    ASSERT_TRUE(bringToFront(other));
    program_->pause();
    Process unanswered = startAgain();
    EXPECT_EQ(statusAtEnd(unanswered), EXIT_FAILURE);
    EXPECT_NE(unanswered.errors(), "") << "and says why";
    program_->resume();
    EXPECT_TRUE(comesToFront("General — Brisk Settings")) << "what was asked meanwhile is done late";

    // Running again, it is brought to the front again, and its main menu works.
    ASSERT_TRUE(bringToFront(other));
    Process third = startAgain();
    EXPECT_EQ(statusAtEnd(third), EXIT_SUCCESS);
    EXPECT_TRUE(comesToFront("General — Brisk Settings"));
    press(Key::q, {Key::leftControl});
    EXPECT_EQ(statusAtEnd(*program_), EXIT_SUCCESS);
}

} // namespace
} // namespace brisk::desktop
