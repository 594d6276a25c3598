#include "program/running_program.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <sys/wait.h>

namespace brisk::desktop {
namespace {

using namespace std::chrono_literals;

/// The first start on a disk that takes its time: the guide has been closed, and that it was is yet to be saved.
class PendingSave : public RunningProgram {
protected:
    void SetUp() override {
        settings_ = "{}";
        startWindowManager();
        start({{"LD_PRELOAD", BRISK_HELD_DISK_PATH}, {"BRISK_HELD_DISK", hold_}});
        const auto guide = focusedDialog();
        ASSERT_TRUE(guide);
        desktop_.requestClose(*guide);
        ASSERT_TRUE(waitUntil([&] { return programWindows().empty() && !temporaries().empty(); }));
        ASSERT_EQ(savedSettings(), settings_);
    }

    bool hasEnded(std::chrono::milliseconds deadline = defaultDeadline()) {
        return waitUntil([&] { return !program_->isRunning(); }, deadline);
    }
    void letGo() const { std::filesystem::remove(hold_); }
    bool isSaved() const { return savedSettings().find("\"hasCompletedOnboarding\": true") != std::string::npos; }
    std::vector<std::string> temporaries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            if (entry.path().filename() != "native-settings.json") {
                names.push_back(entry.path().filename().string());
            }
        }
        return names;
    }

    const std::string hold_ = server_.home().write("hold", "");
    const std::string folder_ = server_.home().path() + "/data/brisk";
};

class EndingPendingSave : public PendingSave, public testing::WithParamInterface<int> {};

TEST_P(EndingPendingSave, IsWaitedFor) {
    if (GetParam() == 0) {
        server_.process().stop();
    } else {
        kill(program_->id(), GetParam());
    }
    EXPECT_FALSE(hasEnded(300ms));
    letGo();
    ASSERT_TRUE(hasEnded());
    EXPECT_TRUE(WIFEXITED(program_->waitStatus().value_or(-1))) << "no crash";
    EXPECT_TRUE(isSaved()) << savedSettings();
    EXPECT_EQ(temporaries(), std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(, EndingPendingSave, testing::Values(SIGTERM, SIGINT, SIGHUP, 0),
                         [](const auto& row) { return row.param == 0 ? "DyingServer" : sigabbrev_np(row.param); });

TEST_F(PendingSave, KilledLeavesTheOldFileAndNothingForGood) {
    kill(program_->id(), SIGKILL);
    ASSERT_TRUE(hasEnded());
    EXPECT_EQ(savedSettings(), settings_);
    EXPECT_EQ(temporaries().size(), 1U);
    letGo();
    start();
    EXPECT_TRUE(focusedDialog()) << "the guide once more";
    EXPECT_EQ(temporaries(), std::vector<std::string>());
}

} // namespace
} // namespace brisk::desktop
