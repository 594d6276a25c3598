#include "program/running_program.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <thread>

namespace brisk::desktop {
namespace {

using namespace std::chrono_literals;

class Program : public RunningProgram {};

class ProgramUnder : public RunningProgram, public testing::WithParamInterface<WindowManager::Kind> {
protected:
    void SetUp() override { startWindowManager(GetParam()); }
};

TEST_P(ProgramUnder, MovesWindowsAndPutsItsAlertsInFront) {
    start();
    // There is no window, so there is no application to act on.
    press(Key::left);
    const auto alert = focusedDialog();
    ASSERT_TRUE(alert);
    // Ignored, not put off: after the alert is closed, nothing follows it, and the next window is left alone.
    press(Key::left);
    // The two keys go different ways through the server. Nothing shows when one has been ignored.
    std::this_thread::sleep_for(100ms);
    press(Key::returnKey, {});
    ASSERT_TRUE(waitUntil([&] { return programWindows().empty(); }));
    const xcb_window_t window = openWindow();
    press(Key::right);
    EXPECT_TRUE(comesTo(window, rightHalf));
    for (const auto& configuration : client_.record(window).configurations) {
        const bool isWide = configuration.isSynthetic && configuration.rect.width > 600;
        EXPECT_FALSE(isWide && configuration.rect.x < 360) << "the left half was applied";
    }
    EXPECT_TRUE(programWindows().empty());

    // In front of the application that the user works in, and closed by the other key.
    client_.close(window);
    const xcb_window_t stubborn = openWindow({.minimumSize = PixelSize{.width = 400, .height = 300},
                                              .maximumSize = PixelSize{.width = 400, .height = 300},
                                              .motifFunctions = WindowDescription::motifClose});
    press(Key::left);
    if (const auto second = focusedDialog()) {
        press(Key::escape, {});
        EXPECT_TRUE(waitUntil([&] { return programWindows().empty() && desktop_.activeWindow() == stubborn; }));
    } else {
        ADD_FAILURE() << "no alert for a window that cannot be moved";
    }
}

INSTANTIATE_TEST_SUITE_P(, ProgramUnder, testing::ValuesIn(WindowManager::kindsToTest()),
                         [](const auto& row) { return std::string(WindowManager::programOf(row.param)); });

TEST_F(Program, EndsInOrderFromInsideAnAlert) {
    startWindowManager();
    for (const int signal : {SIGTERM, SIGINT}) {
        start();
        press(Key::left);
        ASSERT_TRUE(focusedDialog());
        kill(program_->id(), signal);
        ASSERT_TRUE(waitUntil([&] { return !program_->isRunning(); }));
        const int status = program_->waitStatus().value_or(-1);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status << program_->errors();
    }
}

class DyingServer : public RunningProgram, public testing::WithParamInterface<bool> {};

TEST_P(DyingServer, EndsTheProgram) {
    startWindowManager();
    start();
    if (GetParam()) {
        press(Key::left);
        ASSERT_TRUE(focusedDialog());
    }
    server_.process().stop();
    ASSERT_TRUE(waitUntil([&] { return !program_->isRunning(); }));
    EXPECT_TRUE(WIFEXITED(program_->waitStatus().value_or(-1))) << "no crash";
}

INSTANTIATE_TEST_SUITE_P(, DyingServer, testing::Bool(),
                         [](const auto& row) { return row.param ? "WithAnAlertOpen" : "Idle"; });

TEST_F(Program, WaitsForAWindowManagerAndThenWorks) {
    start();
    // No window manager, no bus, no tray: it says what it needs, and goes on without a restart.
    ASSERT_TRUE(waitUntil([&] { return programWindows().size() == 1; }));
    startWindowManager();
    const xcb_window_t window = openWindow();
    press(Key::left);
    EXPECT_TRUE(comesTo(window, leftHalf));
}

/// How often the program has gone to sleep and been woken, over all its threads.
long wakeups(pid_t process) {
    long count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("voluntary_ctxt_switches:")) {
                count += std::stol(line.substr(line.find(':') + 1));
            }
        }
    }
    return count;
}

TEST_F(Program, SleepsWhileNothingHappens) {
    startWindowManager();
    start();
    const xcb_window_t window = openWindow();
    press(Key::left);
    ASSERT_TRUE(comesTo(window, leftHalf));
    // Settled once a second has gone by without a wake-up.
    long before = 0;
    EXPECT_TRUE(waitUntil([&] {
        before = wakeups(program_->id());
        std::this_thread::sleep_for(1s);
        return wakeups(program_->id()) == before;
    }));
    std::this_thread::sleep_for(2s);
    EXPECT_EQ(wakeups(program_->id()), before);

    press(Key::right);
    EXPECT_TRUE(comesTo(window, rightHalf));
    EXPECT_GT(wakeups(program_->id()), before) << "the count counts";
}

} // namespace
} // namespace brisk::desktop
