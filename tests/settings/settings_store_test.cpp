#include "settings/settings_store.h"

#include "platform/simulated/wall_clock.h"
#include "settings/child_process.h"
#include "settings/folder_contents.h"
#include "settings/settings_json.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>

namespace brisk {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* backupName = "native-settings.corrupt-20260102-030405.json";
const HotKeyBinding freeShortcut{18, 256, "⌘1"};

class SettingsStoreTest : public testing::Test {
protected:
    TemporaryFolder folder;
    SettingsFolders folders{.home = folder.path() / "home", .applicationSupport = folder.path() / "support"};
    fs::path local = localFileURL(folders);
    fs::path iCloud = iCloudDriveFolderURL(folders) / "brisk" / "native-settings.json";
    simulated::WallClock clock;

    std::unique_ptr<SettingsStore> open(const fs::path& file) const {
        return std::make_unique<SettingsStore>(file, folders, clock);
    }

    /// What the next start would find.
    static AppSettings saved(SettingsStore& store) {
        store.ioQueue().sync([] {});
        return std::get<AppSettings>(decodeSettings(contentOf(store.fileURL())));
    }
};

std::string outputOf(const std::function<void()>& body) {
    testing::internal::CaptureStdout();
    body();
    return testing::internal::GetCapturedStdout();
}

TEST_F(SettingsStoreTest, AFirstStartTouchesNothingUntilTheFirstEdit) {
    EXPECT_EQ(outputOf([&] {
                  const auto store = open(local);
                  EXPECT_EQ(store->settings, AppSettings());
                  EXPECT_THAT(namesIn(folder.path()), IsEmpty());
                  store->settings.hasCompletedOnboarding = true;
                  store->save();
                  EXPECT_EQ(saved(*store), store->settings);
              }),
              "");
    EXPECT_TRUE(open(local)->settings.hasCompletedOnboarding);
}

TEST_F(SettingsStoreTest, EverySaveWritesTheSettingsOfItsMomentAndTheLastStays) {
    {
        const auto store = open(local);
        for (std::int64_t gap = 1; gap <= 20; ++gap) {
            store->settings.windowGap = gap;
            store->save();
        }
        store->settings.windowGap = 64; // not saved
    }
    EXPECT_EQ(open(local)->settings.windowGap, 20) << "the store has finished its saves before it went";
}

TEST_F(SettingsStoreTest, SettingsMoveToAPlaceThatHasNone) {
    struct Row {
        const char* why;
        bool isInICloudAlready;
        const char* expected;
    };
    createFile(local, R"({"windowGap": 11})");
    for (const Row& row : {Row{"copied, and the source stays", false, R"({"windowGap": 11})"},
                           Row{"there already", true, R"({"windowGap": 22})"}}) {
        SCOPED_TRACE(row.why);
        if (row.isInICloudAlready) {
            createFile(iCloud, R"({"windowGap": 22})");
        }
        EXPECT_EQ(outputOf([&] { EXPECT_EQ(open(iCloud)->settings.windowGap, row.isInICloudAlready ? 22 : 11); }), "");
        EXPECT_EQ(contentOf(iCloud), row.expected);
        EXPECT_EQ(contentOf(local), R"({"windowGap": 11})");
    }
    fs::remove(local);
    EXPECT_EQ(open(local)->settings.windowGap, 22) << "and back, when iCloud Drive is no longer chosen";
}

TEST_F(SettingsStoreTest, AMigrationThatFailsIsOneLineAndTheDefaults) {
    createFile(local, R"({"windowGap": 11})");
    createFile(folders.home, "a file where a folder should be");
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(open(iCloud)->settings, AppSettings()); }),
              "Failed to migrate Brisk settings: Not a directory\n");

    fs::remove(folders.home);
    fs::remove(local);
    fs::create_directory(local);
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(open(iCloud)->settings, AppSettings()); }),
              "Failed to migrate Brisk settings: Is a directory\n");
    EXPECT_FALSE(fs::exists(iCloud));
}

TEST_F(SettingsStoreTest, WhatCannotBeReadIsSetAside) {
    struct Row {
        const char* why;
        std::function<void()> place;
    };
    for (const Row& row : {
             Row{"not JSON", [&] { createFile(local, "{"); }},
             Row{"a wrong value", [&] { createFile(local, R"({"windowGap": "5"})"); }},
             Row{"a folder", [&] { fs::create_directories(local / "inside"); }},
             Row{"a FIFO", [&] { EXPECT_EQ(mkfifo(local.c_str(), 0600), 0); }},
             Row{"a device with no end", [&] { fs::create_symlink("/dev/zero", local); }},
         }) {
        SCOPED_TRACE(row.why);
        fs::create_directories(local.parent_path());
        row.place();
        EXPECT_EQ(outputOf([&] {
                      const auto store = open(local);
                      EXPECT_EQ(store->settings, AppSettings());
                      EXPECT_THAT(namesIn(local.parent_path()), ElementsAre(backupName));
                      store->save();
                      EXPECT_EQ(saved(*store), AppSettings());
                  }),
                  "Brisk settings were unreadable; backed up to " + (local.parent_path() / backupName).string() + "\n");
        fs::remove_all(local.parent_path());
    }
}

TEST_F(SettingsStoreTest, InAFolderThatMayOnlyBeReadTheSettingsLiveInMemory) {
    createFile(local, "{");
    fs::permissions(local, fs::perms{0644});
    fs::permissions(local.parent_path(), fs::perms{0555});
    fs::permissions(folder.path(), fs::perms{0755});
    const std::string output = outputOf([&] {
        ChildProcess child([&] {
            if (!becomeUnprivileged()) {
                return false;
            }
            const auto store = open(local);
            store->settings.windowGap = 5;
            store->save();
            store->ioQueue().sync([] {});
            return store->settings.windowGap == 5;
        });
        EXPECT_TRUE(child.succeeds());
    });
    EXPECT_EQ(output, "Brisk settings were unreadable and could not be backed up: Permission denied\n"
                      "Failed to save Brisk settings: Permission denied\n");
    EXPECT_EQ(contentOf(local), "{");
    fs::permissions(local.parent_path(), fs::perms{0755});
}

TEST_F(SettingsStoreTest, AFailedSaveIsForgottenByTheNext) {
    const auto store = open(local);
    createFile(folders.applicationSupport, "in the way");
    EXPECT_EQ(outputOf([&] {
                  store->settings.windowGap = 5;
                  store->save();
                  store->ioQueue().sync([] {});
              }),
              "Failed to save Brisk settings: Not a directory\n");
    fs::remove(folders.applicationSupport);
    store->clearHotkey("window.center");
    EXPECT_EQ(saved(*store).windowGap, 5);
}

TEST_F(SettingsStoreTest, AStartRemovesWhatAKilledSaveLeft) {
    createFile(local, R"({"windowGap": 11})");
    createFile(local.parent_path() / ".native-settings.json.saving-killed", "{");
    EXPECT_EQ(open(local)->settings.windowGap, 11);
    EXPECT_THAT(namesIn(local.parent_path()), ElementsAre("native-settings.json")) << "though nothing is ever saved";
}

TEST_F(SettingsStoreTest, WhatHappensToTheFileMeanwhileCostsNoSettings) {
    struct Row {
        const char* why;
        std::function<void()> happens;
        const char* output;
        std::vector<std::string> namesAfterNextStart;
    };
    for (const Row& row : {
             Row{"the file is removed", [&] { fs::remove(local); }, "", {"native-settings.json"}},
             Row{"its folder is removed",
                 [&] { fs::remove_all(folders.applicationSupport); },
                 "",
                 {"native-settings.json"}},
             Row{"a folder takes its place",
                 [&] {
                     fs::remove(local);
                     createFile(local / "inside", "x");
                 },
                 "Failed to save Brisk settings: Is a directory\n",
                 {"native-settings.json", backupName}},
         }) {
        SCOPED_TRACE(row.why);
        createFile(local, "{}");
        const auto store = open(local);
        row.happens();
        EXPECT_EQ(outputOf([&] {
                      store->settings.windowGap = 7;
                      store->save();
                      store->ioQueue().sync([] {});
                  }),
                  row.output);
        EXPECT_EQ(store->settings.windowGap, 7);
        outputOf([&] { open(local)->save(); });
        EXPECT_THAT(namesIn(local.parent_path()), testing::UnorderedElementsAreArray(row.namesAfterNextStart));
    }
    EXPECT_EQ(contentOf(local.parent_path() / backupName / "inside"), "x");
}

TEST_F(SettingsStoreTest, AFullDiskCostsTheSaveAndNotTheFile) {
    const fs::path filler = folders.applicationSupport / "filler";
    const auto isSaved = [](SettingsStore& store) {
        store.save();
        store.ioQueue().sync([] {});
        return contentOf(store.fileURL()) == encodeSettings(store.settings);
    };
    fs::create_directories(folders.applicationSupport);
    bool isMounted = false;
    const std::string output = outputOf([&] {
        ChildProcess child([&] {
            // The settings need a page or two.
            if (!mountSmallDisk(folders.applicationSupport, "size=64k")) {
                return true;
            }
            std::puts("mounted");
            const auto store = open(local);
            store->settings.windowGap = 1;
            const bool hadRoom = isSaved(*store);
            std::ofstream(filler) << std::string(1'000'000, 'x') << std::flush;
            store->settings.windowGap = 2;
            const bool hadRoomWhenFull = isSaved(*store);
            const bool isWhole = open(local)->settings.windowGap == 1;
            const bool isAlone = namesIn(local.parent_path()).size() == 1;
            fs::remove(filler);
            return hadRoom && !hadRoomWhenFull && isWhole && isAlone && isSaved(*store);
        });
        isMounted = child.succeeds();
        EXPECT_TRUE(isMounted);
    });
    if (output.empty()) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
    EXPECT_EQ(output, "mounted\nFailed to save Brisk settings: No space left on device\n");
}

TEST_F(SettingsStoreTest, ICloudDriveMayComeAndGoBetweenStarts) {
    const fs::path drive = iCloudDriveFolderURL(folders);
    struct Row {
        const char* why;
        std::function<void()> happens;
        std::int64_t expectedGap;
        std::int64_t editedGap;
    };
    for (const Row& row : {
             Row{"without it", [&] { createFile(local, R"({"windowGap": 1})"); }, 1, 2},
             Row{"it comes, and the settings go along", [&] { fs::create_directories(drive); }, 2, 3},
             Row{"it goes: what was there last", [&] { fs::rename(drive, folder.path() / "drive"); }, 2, 4},
             Row{"it comes back, and what it holds counts", [&] { fs::rename(folder.path() / "drive", drive); }, 3, 5},
         }) {
        SCOPED_TRACE(row.why);
        row.happens();
        const auto store = open(defaultFileURL(folders));
        EXPECT_EQ(store->settings.windowGap, row.expectedGap);
        store->settings.windowGap = row.editedGap;
        store->save();
        EXPECT_EQ(saved(*store).windowGap, row.editedGap);
    }
}

TEST_F(SettingsStoreTest, ClearedShortcutsStayClearedUntilAssigned) {
    const auto store = open(local);
    store->clearHotkey("window.center");
    store->clearHotkey("window.center");
    EXPECT_THAT(saved(*store).disabledCommandHotkeys, ElementsAre("window.center"));
    EXPECT_FALSE(saved(*store).commandHotkeys.contains("window.center"));

    store->settings.disabledCommandHotkeys.emplace_back("window.center"); // as a file may hold it
    store->assignHotkey("window.center", freeShortcut);
    EXPECT_THAT(saved(*store).disabledCommandHotkeys, IsEmpty());
    EXPECT_EQ(saved(*store).commandHotkeys.at("window.center"), freeShortcut);
}

TEST_F(SettingsStoreTest, CustomLayoutsKeepTheirPlaceAndTakeTheirShortcutAlong) {
    const auto store = open(local);
    store->saveCustomLayout({"A", "First", {}, false}, freeShortcut);
    store->saveCustomLayout({"B", "Second", {}, false}, std::nullopt);
    store->saveCustomLayout({"A", "Renamed", {}, true}, freeShortcut);
    EXPECT_THAT(saved(*store).customWindowLayouts, ElementsAre(CustomWindowLayout{"A", "Renamed", {}, true},
                                                               CustomWindowLayout{"B", "Second", {}, false}));
    EXPECT_EQ(saved(*store).commandHotkeys.at("window.custom.A"), freeShortcut);

    store->clearHotkey("window.custom.A");
    EXPECT_THAT(saved(*store).disabledCommandHotkeys, IsEmpty()) << "it has no default to be kept away";
    store->assignHotkey("window.custom.A", freeShortcut);
    store->saveCustomLayout({"A", "Renamed", {}, true}, std::nullopt);
    EXPECT_FALSE(saved(*store).commandHotkeys.contains("window.custom.A"));

    store->assignHotkey("window.custom.A", freeShortcut);
    store->settings.disabledCommandHotkeys = {"window.custom.A", "window.center", "window.custom.A"};
    store->removeCustomLayout("A");
    EXPECT_THAT(store->settings.disabledCommandHotkeys, ElementsAre("window.center"));
    EXPECT_FALSE(store->settings.commandHotkeys.contains("window.custom.A"));
    EXPECT_THAT(saved(*store).customWindowLayouts, ElementsAre(CustomWindowLayout{"B", "Second", {}, false}));
}

TEST_F(SettingsStoreTest, DragTargetsAreSortedAndRestoreIsNone) {
    const auto store = open(local);
    store->setDragEnabled(WindowLayout::restore, true);
    store->ioQueue().sync([] {});
    EXPECT_FALSE(fs::exists(local)) << "not even a save";
    store->setDragEnabled(WindowLayout::topHalf, true);
    store->setDragEnabled(WindowLayout::leftHalf, true);
    store->setDragEnabled(WindowLayout::leftHalf, true);
    EXPECT_THAT(saved(*store).dragEnabledBuiltInWindowLayoutIDs, ElementsAre("window.leftHalf", "window.topHalf"));
    store->setDragEnabled(WindowLayout::leftHalf, false);
    EXPECT_THAT(saved(*store).dragEnabledBuiltInWindowLayoutIDs, ElementsAre("window.topHalf"));
}

TEST_F(SettingsStoreTest, ATakenShortcutIsRefusedWithItsOwnersName) {
    const auto store = open(local);
    store->saveCustomLayout({"A", "Reading", {}, false}, HotKeyBinding{18, 256, "⌘1"});
    store->settings.commandHotkeys["window.custom.gone"] = {19, 256, "⌘2"};
    struct Row {
        const char* why;
        HotKeyBinding candidate;
        const char* edited;
        std::optional<std::string> expected;
    };
    for (const Row& row : {
             Row{"a built-in layout's, whatever its text", {123, 6144, "?"}, "window.custom.A", "Used by Left Half"},
             Row{"recorded again", {123, 6144, "⌃⌥◀"}, "window.leftHalf", std::nullopt},
             Row{"the same key with other modifiers", {123, 256, "⌘◀"}, "window.custom.A", std::nullopt},
             Row{"a custom layout's", {18, 256, "⌘1"}, "window.center", "Used by Reading"},
             Row{"one whose owner is gone", {19, 256, "⌘2"}, "window.center", "Already Used"},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(store->conflictMessage(row.candidate, row.edited), row.expected);
    }
}

} // namespace
} // namespace brisk
