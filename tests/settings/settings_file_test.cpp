#include "settings/settings_file.h"

#include "settings/child_process.h"
#include "settings/folder_contents.h"
#include "settings/settings_json.h"
#include "support/temporary_folder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <random>
#include <thread>

namespace brisk {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class SettingsFile : public testing::Test {
protected:
    TemporaryFolder folder;
    fs::path file = folder.path() / "native-settings.json";
};

std::error_code readError(const fs::path& path) {
    const auto result = readFile(path);
    const auto* error = std::get_if<std::error_code>(&result);
    return error != nullptr ? *error : std::error_code();
}

mode_t permissions(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

TEST_F(SettingsFile, OnlyRegularFilesAreReadAndNoneIsWaitedFor) {
    const fs::path fifo = folder.path() / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(readError(fifo), std::errc::operation_not_supported);
    EXPECT_EQ(readError("/dev/zero"), std::errc::operation_not_supported);
    EXPECT_EQ(readError(folder.path()), std::errc::is_a_directory);
    EXPECT_EQ(readError(file), std::errc::no_such_file_or_directory);
}

TEST_F(SettingsFile, FilesAreReadUpToTheCeiling) {
    createFile(file, "");
    fs::resize_file(file, maximumSettingsFileSize);
    const auto atTheCeiling = readFile(file);
    ASSERT_TRUE(std::holds_alternative<std::string>(atTheCeiling));
    EXPECT_EQ(std::get<std::string>(atTheCeiling).size(), maximumSettingsFileSize);
    fs::resize_file(file, maximumSettingsFileSize + 1);
    EXPECT_EQ(readError(file), std::errc::file_too_large);
}

TEST_F(SettingsFile, AReplacedFileKeepsItsPermissionsAndANewOneIsPrivate) {
    ASSERT_FALSE(writeFileAtomically(file, "new"));
    EXPECT_EQ(permissions(file), 0600U);
    for (const mode_t mode : {0644U, 0400U}) {
        fs::permissions(file, fs::perms{mode});
        ASSERT_FALSE(writeFileAtomically(file, "newer"));
        EXPECT_EQ(permissions(file), mode);
        EXPECT_EQ(contentOf(file), "newer");
    }
}

TEST_F(SettingsFile, LinksStayAndWhatTheyLeadToIsReplaced) {
    const fs::path target = folder.path() / "dotfiles" / "settings";
    fs::create_directory(target.parent_path());
    fs::create_symlink("dotfiles/middle", file);
    fs::create_symlink("settings", folder.path() / "dotfiles" / "middle");
    EXPECT_FALSE(itemExists(file)) << "it leads nowhere yet";
    for (const char* content : {"created", "replaced"}) {
        ASSERT_FALSE(writeFileAtomically(file, content));
        EXPECT_TRUE(fs::is_symlink(file));
        EXPECT_EQ(contentOf(target), content);
    }
    EXPECT_THAT(namesIn(target.parent_path()), UnorderedElementsAre("settings", "middle"));

    const fs::path loop = folder.path() / "loop";
    fs::create_symlink("loop", loop);
    EXPECT_EQ(writeFileAtomically(loop, "x"), std::errc::too_many_symbolic_link_levels);
}

TEST_F(SettingsFile, NothingButARegularFileIsReplaced) {
    fs::create_symlink("/dev/null", file);
    EXPECT_EQ(writeFileAtomically(file, "x"), std::errc::operation_not_supported);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_EQ(writeFileAtomically(file, "x"), std::errc::is_a_directory);
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("native-settings.json"));
}

TEST_F(SettingsFile, ASaveThatFailsLeavesTheOldFileAndNothingElse) {
    ASSERT_FALSE(writeFileAtomically(file, "old"));
    fs::permissions(folder.path(), fs::perms{0555});
    ChildProcess inReadOnlyFolder(
        [&] { return becomeUnprivileged() && writeFileAtomically(file, "new") == std::errc::permission_denied; });
    EXPECT_TRUE(inReadOnlyFolder.succeeds());
    fs::permissions(folder.path(), fs::perms{0755});

    // As on a full disk, the first bytes fit and the rest do not.
    ChildProcess withoutRoom([&] {
        const rlimit limit{.rlim_cur = 4096, .rlim_max = 4096};
        return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0 &&
               writeFileAtomically(file, std::string(10'000, 'x')) == std::errc::file_too_large &&
               !writeFileAtomically(folder.path() / "small", "fits");
    });
    EXPECT_TRUE(withoutRoom.succeeds());
    EXPECT_EQ(contentOf(file), "old");
    EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("native-settings.json", "small"));
}

TEST_F(SettingsFile, ASaveRemovesWhatKilledSavesLeftAndNothingElse) {
    const std::string prefix = ".native-settings.json.saving-";
    for (const std::string& name : {prefix + "stale1", prefix + "stale2", prefix + "in-use", prefix + "longer-name",
                                    std::string(".other.json.saving-stale1"), std::string("notes")}) {
        createFile(folder.path() / name, "x");
    }
    const int inUse = open((folder.path() / (prefix + "in-use")).c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(inUse, LOCK_EX | LOCK_NB), 0);
    ASSERT_FALSE(writeFileAtomically(file, "new"));
    EXPECT_THAT(namesIn(folder.path()),
                UnorderedElementsAre("native-settings.json", prefix + "in-use", prefix + "longer-name",
                                     ".other.json.saving-stale1", "notes"));
    close(inUse);
}

TEST_F(SettingsFile, SavesOfTwoProgramsAtOnceNeverMix) {
    constexpr int saves = 100;
    const std::array texts{std::string(300'000, 'a'), std::string(200'000, 'b')};
    ASSERT_FALSE(writeFileAtomically(file, texts[0]));
    const auto saveRepeatedly = [&](const std::string& text) {
        bool isFine = true;
        for (int i = 0; i < saves; ++i) {
            isFine = !writeFileAtomically(file, text) && isFine;
        }
        EXPECT_TRUE(isFine);
    };
    std::thread first(saveRepeatedly, texts[0]);
    std::thread second(saveRepeatedly, texts[1]);
    for (int i = 0; i < saves; ++i) {
        const auto seen = readFile(file);
        EXPECT_TRUE(seen == decltype(seen)(texts[0]) || seen == decltype(seen)(texts[1]));
    }
    first.join();
    second.join();
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("native-settings.json"));
}

TEST_F(SettingsFile, ASaveKilledAtAnyMomentLeavesTheOldFileOrTheNewOne) {
    AppSettings small;
    small.windowGap = 1;
    AppSettings large;
    large.windowGap = 2;
    large.customWindowLayouts.assign(2'000, {"id", "name", {}, false});
    const std::array texts{encodeSettings(small), encodeSettings(large)};
    ASSERT_FALSE(writeFileAtomically(file, texts[0]));

    constexpr int rounds = 60;
    std::mt19937 random(4711); // fixed, so that a failure comes again
    std::size_t mostItems = 0;
    for (int round = 0; round < rounds; ++round) {
        std::array<int, 2> started{};
        ASSERT_EQ(pipe(started.data()), 0);
        ChildProcess child([&] {
            for (std::size_t i = 1;; ++i) {
                if (writeFileAtomically(file, texts.at(i % 2)) || write(started[1], "x", 1) != 1) {
                    return false;
                }
            }
        });
        char byte = 0;
        ASSERT_EQ(read(started[0], &byte, 1), 1);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2'000));
        ASSERT_TRUE(child.kill()) << "every save until then succeeded";
        close(started[0]);
        close(started[1]);

        const std::string seen = contentOf(file);
        ASSERT_TRUE(seen == texts[0] || seen == texts[1]) << "round " << round << ": " << seen.size() << " bytes";
        mostItems = std::max(mostItems, namesIn(folder.path()).size());
    }
    EXPECT_EQ(mostItems, 2U) << "some save was hit in the middle, and the next removed what it left";
    ASSERT_FALSE(writeFileAtomically(file, texts[0]));
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("native-settings.json"));
}

TEST_F(SettingsFile, WhateverIsMovedAsideReplacesNothing) {
    const fs::path wanted = folder.path() / "backup.json";
    const auto moved = [&] {
        const auto result = moveAside(file, wanted);
        const auto* path = std::get_if<fs::path>(&result);
        return path != nullptr ? path->filename().string() : "error";
    };
    createFile(file, "first");
    EXPECT_EQ(moved(), "backup.json");
    createFile(file, "second");
    EXPECT_EQ(moved(), "backup-2.json");
    fs::create_directory(file);
    createFile(file / "inside", "third");
    EXPECT_EQ(moved(), "backup-3.json");
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(moved(), "backup-4.json");
    fs::create_symlink("backup.json", file);
    EXPECT_EQ(moved(), "backup-5.json");

    EXPECT_EQ(contentOf(wanted), "first");
    EXPECT_EQ(contentOf(folder.path() / "backup-2.json"), "second");
    EXPECT_EQ(contentOf(folder.path() / "backup-3.json" / "inside"), "third");
    EXPECT_TRUE(fs::is_fifo(folder.path() / "backup-4.json"));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "backup-5.json"));

    EXPECT_EQ(moved(), "error") << "nothing is there to move";
    EXPECT_EQ(namesIn(folder.path()).size(), 5U) << "and no name stays taken for it";
}

} // namespace
} // namespace brisk
