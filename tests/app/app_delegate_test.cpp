#include "app/app_delegate.h"

#include "platform/simulated/desktop.h"
#include "support/printing.h"
#include "support/recording_presentation.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace brisk {
namespace {

using testing::Contains;
using testing::ElementsAre;

class AppDelegateTest : public testing::Test {
protected:
    static constexpr CGRect start{.origin = {100, 100}, .size = {640, 480}};
    static constexpr CGRect leftHalf{.origin = {0, 25}, .size = {720, 875}};
    static constexpr std::uint32_t controlOption = controlKey | optionKey;

    /// Where the call stands in the desktop's log; the end if it was not made.
    std::ptrdiff_t position(const std::string& call) const {
        return std::ranges::find(desktop.log.calls(), call) - desktop.log.calls().begin();
    }

    TemporaryFolder home;
    simulated::Desktop desktop;
    RecordingPresentation shown{desktop.log};
    simulated::ApplicationRef editor = desktop.launchInFront("Editor", start);
    simulated::WindowRef window = editor->windows.front();
    SettingsFolders folders{.home = home.path(), .applicationSupport = home.path() / "data"};
    std::shared_ptr<AppDelegate> delegate =
        std::make_shared<AppDelegate>(desktop.services(), shown.presentation(), folders);
};

TEST_F(AppDelegateTest, StartsInAnOrderThatMatters) {
    delegate->applicationDidFinishLaunching();
    const std::vector<std::string> expected{"setMainMenu Brisk",
                                            "setActivationPolicy accessory",
                                            "updateMenu",
                                            "addGlobalMonitorForEventsMatchingMask 70",
                                            "InstallEventHandler",
                                            "RegisterEventHotKey 125 6144 as 100",
                                            "RegisterEventHotKey 34 6144 as 110",
                                            "show onboarding",
                                            "makeUpdater"};
    std::vector<std::string> inOrder = expected;
    std::ranges::sort(inOrder, {}, [&](const std::string& call) { return position(call); });
    EXPECT_EQ(inOrder, expected);
    for (const std::string& call : expected) {
        EXPECT_THAT(desktop.log.calls(), Contains(call).Times(1));
    }
}

TEST_F(AppDelegateTest, AHotKeyRunsItsCommandAndTheMenuDoesTheSame) {
    delegate->applicationDidFinishLaunching();
    desktop.hotKeys.press(123, controlOption);
    EXPECT_EQ(window->frame, start);
    desktop.mainQueue.run();
    EXPECT_EQ(window->frame, leftHalf);

    shown.statusItem->open();
    desktop.workspace.frontmost = std::make_shared<simulated::Application>(simulated::Desktop::ownProcess, "Brisk");
    const auto maximize = std::ranges::find(shown.statusItem->menu.items, "Maximize", &MenuItem::title);
    ASSERT_NE(maximize, shown.statusItem->menu.items.end());
    shown.statusItem->choose(*maximize);
    EXPECT_EQ(window->frame.width(), 1440) << "acts on the application in front when the menu opened";
    shown.statusItem->choose({.action = MenuAction::runWindowCommand});
    shown.statusItem->choose({.action = MenuAction::checkForUpdates});
    shown.statusItem->choose({.action = MenuAction::quit});
    EXPECT_THAT(desktop.log.calls(), Contains("checkForUpdates"));
    EXPECT_THAT(desktop.log.calls(), Contains("terminate"));
}

TEST_F(AppDelegateTest, ShowsTheGuideAtTheFirstStartAndAsksForPermissionAtLaterOnes) {
    desktop.accessibility.isTrusted = false;
    delegate->applicationDidFinishLaunching();
    EXPECT_THAT(desktop.log.calls(), Contains("show onboarding"));
    EXPECT_THAT(desktop.log.calls(), testing::Not(Contains("AXIsProcessTrustedWithOptions prompt")));
    shown.onboardingWindow->close();
    delegate->applicationWillTerminate();
    delegate.reset();

    for (const bool isTrusted : {false, true}) {
        SCOPED_TRACE(isTrusted);
        desktop.accessibility.isTrusted = isTrusted;
        desktop.log.clear();
        const auto later = std::make_shared<AppDelegate>(desktop.services(), shown.presentation(), folders);
        later->applicationDidFinishLaunching();
        EXPECT_THAT(desktop.log.calls(), testing::Not(Contains("show onboarding")));
        EXPECT_THAT(desktop.log.calls(), Contains("AXIsProcessTrustedWithOptions prompt").Times(isTrusted ? 0 : 1));
        EXPECT_TRUE(shown.alerts.alerts.empty());
    }
}

TEST_F(AppDelegateTest, OpensTheSettingsWhereTheUserLeftThem) {
    delegate->showSettings();
    delegate->showAbout();
    delegate->applicationDidFinishLaunching();
    desktop.log.clear();
    delegate->perform({.action = MenuAction::showSettings});
    shown.settingsWindow->show(SettingsPane::windows);
    delegate->perform({.action = MenuAction::showAbout});
    delegate->perform({.action = MenuAction::showSettings});
    std::vector<std::string> shownPanes;
    std::ranges::copy_if(desktop.log.calls(), std::back_inserter(shownPanes),
                         [](const std::string& call) { return call.starts_with("show settings"); });
    EXPECT_THAT(shownPanes, ElementsAre("show settings General", "show settings Windows", "show settings About",
                                        "show settings Windows"));
}

TEST_F(AppDelegateTest, ShowsNoPaneBelowAnOpenDialog) {
    delegate->applicationDidFinishLaunching();
    delegate->showSettings();
    desktop.workspace.frontmost = nullptr;
    shown.alerts.whileOpen = [&] {
        desktop.log.clear();
        delegate->showSettings();
        delegate->showAbout();
        EXPECT_THAT(desktop.log.calls(), ElementsAre());
    };
    desktop.hotKeys.press(123, controlOption);
    desktop.mainQueue.run();
    ASSERT_EQ(shown.alerts.alerts.size(), 1U);
    delegate->showAbout();
    EXPECT_THAT(desktop.log.calls(), Contains("show settings About")) << "and once it is closed, as ever";
}

TEST_F(AppDelegateTest, ChangedSettingsAreInForceAtOnce) {
    delegate->applicationDidFinishLaunching();
    auto& controller = *delegate->windowController();
    controller.settingsStore().assignHotkey("window.leftHalf", {.keyCode = 4, .modifiers = cmdKey, .display = "⌘H"});
    desktop.log.clear();
    controller.onSettingsChanged();
    EXPECT_LT(position("UnregisterEventHotKey 110"), position("InstallEventHandler"))
        << "the old keys are free when the new ones are asked for";
    EXPECT_THAT(desktop.log.calls(), Contains("updateMenu"));
    EXPECT_EQ(desktop.hotKeys.press(123, controlOption), std::nullopt);
    EXPECT_EQ(desktop.hotKeys.press(4, cmdKey), noErr);
    desktop.mainQueue.run();
    EXPECT_EQ(window->frame, leftHalf);
}

TEST_F(AppDelegateTest, TerminationStopsWatchingAndWritesWhatIsPending) {
    delegate->applicationDidFinishLaunching();
    for (int gap = 1; gap <= 20; ++gap) {
        delegate->windowController()->settingsStore().settings.windowGap = gap;
        delegate->windowController()->settingsStore().save();
    }
    delegate->applicationWillTerminate();
    EXPECT_THAT(desktop.log.calls(), Contains("removeMonitor"));
    const SettingsStore reloaded(localFileURL(folders), folders, desktop.wallClock);
    EXPECT_EQ(reloaded.settings.windowGap, 20);
}

TEST_F(AppDelegateTest, ACommandThatOutlivesTheDelegateDoesNothing) {
    delegate->applicationDidFinishLaunching();
    desktop.hotKeys.press(123, controlOption);
    delegate.reset();
    EXPECT_EQ(desktop.hotKeys.registeredCount(), 0U);
    desktop.mainQueue.run();
    EXPECT_EQ(window->frame, start);
}

} // namespace
} // namespace brisk
