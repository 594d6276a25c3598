#include "soak/killed_saves.h"

#include "settings/settings_store.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <iterator>
#include <random>
#include <system_error>
#include <thread>

namespace brisk {

namespace {

class NoClock : public WallClock {
public:
    std::tm localTime() const override { return {}; }
};

/// The settings that the saves alternate between: a small file, and one of many blocks.
AppSettings settingsOfSave(std::int64_t gap) {
    AppSettings settings;
    settings.windowGap = gap;
    if (gap == 2) {
        for (int i = 0; i < 300; ++i) {
            settings.customWindowLayouts.push_back({std::to_string(i), "name", {}, false});
        }
    }
    return settings;
}

void saveBoth(SettingsStore& store) {
    for (const std::int64_t gap : {1, 2}) {
        store.settings = settingsOfSave(gap);
        store.save();
        store.ioQueue().sync([] {});
    }
}

} // namespace

KilledSaves killSaves(int count, const std::filesystem::path& folder) {
    const SettingsFolders folders{.home = folder / "home", .applicationSupport = folder};
    const NoClock clock;
    const auto file = localFileURL(folders);
    std::mt19937 random(4711); // fixed, so that a failure comes again
    // A save of each kind, so that the kills fall on any moment of either.
    const auto start = std::chrono::steady_clock::now();
    {
        SettingsStore store(file, folders, clock);
        saveBoth(store);
    }
    const auto duration = std::chrono::ceil<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    std::uniform_int_distribution<std::chrono::microseconds::rep> moment(0, duration.count());
    KilledSaves result;
    for (int round = 0; round < count; ++round) {
        std::array<int, 2> started{};
        if (pipe(started.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        const pid_t child = fork();
        if (child < 0) {
            throw std::system_error(errno, std::generic_category(), "fork");
        }
        if (child == 0) {
            SettingsStore store(file, folders, clock);
            [[maybe_unused]] const ssize_t written = write(started[1], "x", 1);
            for (;;) {
                saveBoth(store);
            }
        }
        // So that a child which dies before its word is heard of.
        close(started[1]);
        char byte = 0;
        const bool isStarted = read(started[0], &byte, 1) == 1;
        std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        close(started[0]);

        const auto items = [&] {
            return std::distance(std::filesystem::directory_iterator(file.parent_path()),
                                 std::filesystem::directory_iterator());
        };
        result.hitInTheMiddle += items() > 1 ? 1 : 0;
        const SettingsStore next(file, folders, clock);
        const auto gap = next.settings.windowGap;
        if (!isStarted || (gap != 1 && gap != 2) || next.settings != settingsOfSave(gap)) {
            result.failure = "kill " + std::to_string(round) + " left neither the old settings nor the new ones";
        } else if (items() != 1) {
            result.failure = "kill " + std::to_string(round) + " left something for good";
        }
    }
    if (result.hitInTheMiddle == 0) {
        result.failure = "no save was hit in the middle";
    }
    return result;
}

} // namespace brisk
