#include "app/general_pane.h"
#include "app/settings_pane.h"
#include "app/sync_pane.h"
#include "app/version_text.h"
#include "app/windows_pane.h"
#include "platform/hot_key_service.h"
#include "platform/simulated/bundle_info.h"
#include "platform/simulated/login_item.h"
#include "platform/simulated/wall_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace brisk {
namespace {

TEST(SettingsPane, ToolbarItemsLeadToTheirPanesAndNoOtherDoes) {
    for (const SettingsPane pane : allSettingsPanes) {
        EXPECT_EQ(settingsPaneOfToolbarItem(toolbarItemIdentifier(pane)), pane);
    }
    EXPECT_EQ(toolbarItemIdentifier(SettingsPane::sync), "briskwm.settings.sync");
    EXPECT_EQ(settingsPaneOfToolbarItem("briskwm.settings.Sync"), std::nullopt);
    EXPECT_EQ(settingsPaneOfToolbarItem(""), std::nullopt);
}

TEST(LoginItem, IsChangedOnlyWhereItDiffersFromWhatIsWanted) {
    struct Row {
        LoginItemStatus before;
        bool isWanted;
        std::vector<std::string> calls;
    };
    for (const Row& row : {
             Row{LoginItemStatus::notRegistered, true, {"registerService"}},
             Row{LoginItemStatus::notFound, true, {"registerService"}},
             Row{LoginItemStatus::enabled, true, {}},
             Row{LoginItemStatus::requiresApproval, true, {}},
             Row{LoginItemStatus::notRegistered, false, {}},
             Row{LoginItemStatus::notFound, false, {}},
             Row{LoginItemStatus::enabled, false, {"unregisterService"}},
             Row{LoginItemStatus::requiresApproval, false, {"unregisterService"}},
         }) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(row.before) << " wanted " << row.isWanted);
        simulated::CallLog log;
        simulated::LoginItem item(log);
        item.currentStatus = row.before;
        EXPECT_EQ(setOpensAtLogin(item, row.isWanted), std::nullopt);
        EXPECT_EQ(log.calls(), row.calls);
    }
}

TEST(LoginItem, AFailureNamesWhatCouldNotBeDoneAndWhy) {
    simulated::CallLog log;
    simulated::LoginItem item(log);
    item.error = "The disk is full.";
    EXPECT_EQ(setOpensAtLogin(item, true), (Alert{"Could not turn on Open at Login", "The disk is full."}));
    item.currentStatus = LoginItemStatus::requiresApproval;
    EXPECT_EQ(setOpensAtLogin(item, false), (Alert{"Could not turn off Open at Login", "The disk is full."}));
}

TEST(WindowsPane, ListsEveryLayoutWithItsShortcutAndDragging) {
    AppSettings settings;
    settings.dragEnabledBuiltInWindowLayoutIDs = {"window.topHalf"};
    settings.customWindowLayouts = {
        {.id = "a", .name = "Code", .selection = {3, 2, 0, 0, 2, 1}, .isAvailableForDragging = true},
        {.id = "b", .name = "Chat", .selection = {3, 2, 2, 0, 1, 2}},
    };
    const HotKeyBinding binding{.keyCode = 1, .modifiers = cmdKey, .display = "\u2318S"};
    settings.commandHotkeys["window.custom.b"] = binding;

    const WindowsPane pane = windowsPane(settings);
    ASSERT_EQ(pane.builtInLayouts.size(), allWindowLayouts.size());
    for (const BuiltInLayoutRow& row : pane.builtInLayouts) {
        SCOPED_TRACE(row.command);
        if (row.layout == WindowLayout::restore) {
            EXPECT_EQ(row.isDragTarget, std::nullopt);
            EXPECT_EQ(row.row.detail, "Return the window to its pre-Brisk frame.");
        } else {
            EXPECT_EQ(row.isDragTarget, row.layout == WindowLayout::topHalf);
        }
        const auto expected = settings.commandHotkeys.find(row.command);
        EXPECT_EQ(row.binding,
                  expected != settings.commandHotkeys.end() ? std::optional(expected->second) : std::nullopt);
    }
    ASSERT_EQ(pane.customLayoutRows.size(), 2U);
    EXPECT_EQ(pane.customLayoutRows[0].row.title, "Code");
    EXPECT_EQ(pane.customLayoutRows[0].row.detail, "2\u00D71 area on a 3\u00D72 grid \u00B7 Drag target");
    EXPECT_EQ(pane.customLayoutRows[0].binding, std::nullopt);
    EXPECT_EQ(pane.customLayoutRows[1].row.detail, "1\u00D72 area on a 3\u00D72 grid");
    EXPECT_EQ(pane.customLayoutRows[1].binding, binding);
}

TEST(WindowGap, IsAWholeNumberKeptInItsRange) {
    struct Row {
        const char* typed;
        std::optional<std::int64_t> stored;
    };
    constexpr std::nullopt_t refused = std::nullopt;
    TemporaryFolder home;
    const SettingsFolders folders{.home = home.path(), .applicationSupport = home.path() / "data"};
    const simulated::WallClock clock;
    SettingsStore store(localFileURL(folders), folders, clock);
    for (const Row& row : {
             Row{"0", 0},
             Row{"12", 12},
             Row{" 12 ", 12},
             Row{"064", 64},
             Row{"65", 64},
             Row{"100", 64},
             Row{"99999999999999999999", 64},
             Row{"-1", 0},
             Row{"\u22125", 0},
             Row{"-99999999999999999999", 0},
             Row{"", refused},
             Row{" ", refused},
             Row{"-", refused},
             Row{"abc", refused},
             Row{"12px", refused},
             Row{"1.5", refused},
             Row{"--5", refused},
             Row{"1 2", refused},
         }) {
        SCOPED_TRACE(row.typed);
        const auto typed = typedWindowGap(row.typed);
        ASSERT_EQ(typed.has_value(), row.stored.has_value());
        if (typed) {
            EXPECT_EQ(setWindowGap(store, *typed), *row.stored);
            EXPECT_EQ(store.settings.windowGap, *row.stored);
        }
    }
    store.ioQueue().sync([] {});
    EXPECT_EQ(SettingsStore(localFileURL(folders), folders, clock).settings.windowGap, 0) << "saved as well";
}

TEST(SyncPane, SaysWhetherTheSettingsFollowTheUser) {
    const SettingsFolders folders{.home = "/home/user", .applicationSupport = "/home/user/.local/share"};
    EXPECT_EQ(syncPane(localFileURL(folders)).storage, "Local Application Support");
    EXPECT_EQ(syncPane(counterpartFileURL(folders, localFileURL(folders))).storage, "iCloud Drive");
}

TEST(VersionText, FallsBackWhereTheBundleHasNoString) {
    simulated::BundleInfo bundle;
    EXPECT_EQ(versionText(bundle), "Version 0.1.0 (Build dev)");
    bundle.infoDictionary["CFBundleShortVersionString"] = "1.2";
    bundle.infoDictionary["CFBundleVersion"] = "45";
    EXPECT_EQ(versionText(bundle), "Version 1.2 (Build 45)");
    bundle.infoDictionary["CFBundleShortVersionString"] = std::int64_t{2};
    EXPECT_EQ(versionText(bundle), "Version 0.1.0 (Build 45)");
}

} // namespace
} // namespace brisk
