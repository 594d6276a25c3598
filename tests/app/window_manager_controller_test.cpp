#include "app/window_manager_controller.h"

#include "platform/simulated/desktop.h"
#include "support/printing.h"
#include "support/recording_presentation.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brisk {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WindowManagerControllerTest : public testing::Test {
protected:
    static constexpr CGRect start{.origin = {100, 100}, .size = {640, 480}};
    static constexpr CGRect leftHalf{.origin = {0, 25}, .size = {720, 875}};

    /// This program, as the desktop sees it when one of its windows is in front.
    simulated::ApplicationRef ownApplication() {
        return std::make_shared<simulated::Application>(simulated::Desktop::ownProcess, "Brisk");
    }
    std::vector<Alert> takeAlerts() { return std::exchange(alerts.alerts, {}); }

    TemporaryFolder home;
    simulated::Desktop desktop;
    RecordingPresentation shown{desktop.log};
    RecordingAlerts& alerts = shown.alerts;
    simulated::ApplicationRef application = desktop.launchInFront("Editor", start);
    simulated::WindowRef window = application->windows.front();
    std::shared_ptr<WindowManagerController> controller = WindowManagerController::create(
        desktop.services(), shown.presentation(), {.home = home.path(), .applicationSupport = home.path() / "data"});
};

TEST_F(WindowManagerControllerTest, ResolvesBuiltInLayoutsThenCustomOnesInStoredOrder) {
    controller->settingsStore().settings.customWindowLayouts = {
        {.id = "A", .name = "first", .selection = {2, 1, 1, 0, 1, 1}},
        {.id = "A", .name = "second", .selection = {1, 1, 0, 0, 1, 1}}};
    controller->settingsStore().settings.windowGap = 10;

    controller->runCommand("window.leftHalf");
    EXPECT_EQ(window->frame, (CGRect{{10, 35}, {705, 855}}));
    controller->runCommand("window.custom.A");
    EXPECT_EQ(window->frame, (CGRect{{725, 35}, {705, 855}}));
    for (const char* unknown : {"window.custom.B", "window.LeftHalf", "leftHalf", ""}) {
        controller->runCommand(unknown);
        EXPECT_EQ(window->frame, (CGRect{{725, 35}, {705, 855}})) << unknown;
    }
    controller->runCommand("window.restore");
    EXPECT_EQ(window->frame, start);
    controller->runCommand("window.restore");
    EXPECT_THAT(takeAlerts(), IsEmpty()) << "nothing to restore is nothing to tell";
}

TEST_F(WindowManagerControllerTest, ActsOnTheApplicationInFrontElseTheLastOneSeenThere) {
    const Alert noTarget{"No active app window",
                         "Switch to the application whose window you want to manage, then try again."};
    desktop.workspace.frontmost = ownApplication();
    controller->runCommand("window.unknown");
    EXPECT_THAT(takeAlerts(), ElementsAre(noTarget)) << "asked for before the command is looked at";

    desktop.workspace.frontmost = application;
    controller->runCommand("window.unknown");
    EXPECT_EQ(controller->previousApplication(), application);
    desktop.workspace.frontmost = ownApplication();
    controller->runCommand("window.leftHalf");
    EXPECT_EQ(window->frame, leftHalf);
    EXPECT_THAT(takeAlerts(), IsEmpty());

    application->terminated = true;
    controller->runCommand("window.leftHalf");
    EXPECT_THAT(takeAlerts(), ElementsAre(noTarget));
    EXPECT_EQ(controller->previousApplication(), application) << "kept all the same";

    desktop.workspace.frontmost = nullptr;
    controller->runCommand("window.leftHalf");
    EXPECT_THAT(takeAlerts(), ElementsAre(noTarget));
}

TEST_F(WindowManagerControllerTest, TellsWhatWentWrong) {
    controller->settingsStore().settings.customWindowLayouts = {{.id = "A", .name = "Wide"}};
    window->sizeWriteError = kAXErrorCannotComplete;
    struct Row {
        const char* command;
        std::optional<std::string> name;
        bool hasWindow;
        Alert expected;
    };
    for (const Row& row : {
             Row{"window.leftHalf",
                 "Editor",
                 false,
                 {"Could not find window", "Brisk could not find a focused window for Editor."}},
             Row{"window.restore",
                 std::nullopt,
                 false,
                 {"Could not find window", "Brisk could not find a focused window for the active app."}},
             Row{"window.topHalf",
                 "Editor",
                 true,
                 {"Could not apply Top Half", "Editor did not accept the requested window frame."}},
             Row{"window.custom.A",
                 std::nullopt,
                 true,
                 {"Could not apply Wide", "The active app did not accept the requested window frame."}},
         }) {
        SCOPED_TRACE(row.expected.informativeText);
        application->name = row.name;
        window->exists = row.hasWindow;
        controller->runCommand(row.command);
        EXPECT_THAT(takeAlerts(), ElementsAre(row.expected));
    }
}

TEST_F(WindowManagerControllerTest, WithoutPermissionAsksForItAndDropsTheCommand) {
    desktop.accessibility.isTrusted = false;
    desktop.log.clear();
    controller->runCommand("window.leftHalf");
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("frontmostApplication", "AXIsProcessTrusted", "AXIsProcessTrustedWithOptions prompt"));
    EXPECT_THAT(takeAlerts(),
                ElementsAre(Alert{"Allow Brisk to manage windows",
                                  "macOS needs Accessibility permission before Brisk can resize and move windows."}));
    desktop.accessibility.isTrusted = true;
    desktop.mainQueue.run();
    EXPECT_EQ(window->frame, start) << "not carried out later either";
}

TEST_F(WindowManagerControllerTest, IgnoresCommandsAndDragsWhileAnAlertIsOpen) {
    controller->settingsStore().settings.dragEnabledBuiltInWindowLayoutIDs = {"window.maximize"};
    const auto dragAndDrop = [&] {
        desktop.eventMonitor.send(NSEventType::leftMouseDown, 0);
        desktop.mainQueue.run();
        window->frame.origin.x += 40;
        desktop.eventMonitor.send(NSEventType::leftMouseDragged, NSEventModifierFlagShift);
        desktop.eventMonitor.send(NSEventType::leftMouseUp, NSEventModifierFlagShift);
        desktop.mainQueue.run();
    };
    window->sizeWriteError = kAXErrorCannotComplete;
    alerts.whileOpen = [&] {
        window->sizeWriteError = kAXErrorSuccess;
        window->frame = start;
        controller->runCommand("window.leftHalf");
        EXPECT_EQ(window->frame, start);
        dragAndDrop();
        EXPECT_EQ(window->frame.size, start.size);
    };
    controller->runCommand("window.leftHalf");
    EXPECT_EQ(takeAlerts().size(), 1U);

    dragAndDrop();
    EXPECT_EQ(window->frame, (CGRect{{0, 25}, {1440, 875}})) << "once it is closed a drag snaps again";
    controller->runCommand("window.leftHalf");
    EXPECT_EQ(window->frame, leftHalf);
}

TEST_F(WindowManagerControllerTest, DragZonesFollowTheSettingsInDeclarationOrder) {
    auto& settings = controller->settingsStore().settings;
    settings.dragEnabledBuiltInWindowLayoutIDs = {"window.center", "window.leftHalf", "window.restore", "nonsense"};
    desktop.workspace.frontmost = application;
    desktop.eventMonitor.pointer = {10, 10};
    desktop.eventMonitor.send(NSEventType::leftMouseDown, 0);
    desktop.mainQueue.run();
    window->frame.origin.x += 40;
    desktop.eventMonitor.send(NSEventType::leftMouseDragged, NSEventModifierFlagShift);
    desktop.mainQueue.run();
    settings.windowGap = 10;
    desktop.eventMonitor.send(NSEventType::leftMouseUp, NSEventModifierFlagShift);
    desktop.mainQueue.run();
    EXPECT_EQ(window->frame, (CGRect{{10, 35}, {705, 855}})) << "dropped on the left half, with the gap of that moment";
    EXPECT_EQ(controller->previousApplication(), application);
}

TEST_F(WindowManagerControllerTest, KeepsOneSettingsWindowAndFollowsItsClosing) {
    int changes = 0;
    controller->onSettingsChanged = [&] { ++changes; };
    SettingsWindow& settingsWindow = controller->settingsWindowController();
    EXPECT_EQ(&controller->settingsWindowController(), &settingsWindow);
    desktop.log.clear();
    controller->showSettings(SettingsPane::sync);
    shown.settingsWindow->callbacks.onSettingsChanged();
    shown.settingsWindow->callbacks.onClose();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("setActivationPolicy regular", "show settings Sync", "setActivationPolicy accessory"));
    EXPECT_EQ(changes, 1);
}

TEST_F(WindowManagerControllerTest, FinishingTheGuideIsRememberedOnceAndReleasesIt) {
    auto& store = controller->settingsStore();
    for (const bool wasCompleted : {false, true}) {
        SCOPED_TRACE(wasCompleted);
        store.ioQueue().sync([] {});
        std::filesystem::remove(store.fileURL());
        desktop.log.clear();
        controller->showOnboarding();
        controller->showOnboarding();
        shown.onboardingWindow->close();
        EXPECT_THAT(desktop.log.calls(),
                    ElementsAre("setActivationPolicy regular", "show onboarding", "setActivationPolicy regular",
                                "show onboarding", "setActivationPolicy accessory", "release onboarding"));
        EXPECT_TRUE(store.settings.hasCompletedOnboarding);
        store.ioQueue().sync([] {});
        EXPECT_EQ(std::filesystem::exists(store.fileURL()), !wasCompleted);
    }
}

} // namespace
} // namespace brisk
