#include "hotkeys/command_hot_key_registry.h"

#include "hotkeys/virtual_keys.h"
#include "platform/simulated/desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace brisk {
namespace {

using testing::ElementsAre;

class CommandHotKeyRegistryTest : public testing::Test {
protected:
    std::string registerAll(const std::map<CommandIdentifier, HotKeyBinding>& bindings) {
        registry = std::make_unique<CommandHotKeyRegistry>(
            desktop.hotKeys, desktop.mainQueue, [this](const CommandIdentifier& c) { commands.push_back(c); });
        testing::internal::CaptureStdout();
        registry->registerBindings(bindings);
        return testing::internal::GetCapturedStdout();
    }

    simulated::Desktop desktop;
    std::vector<CommandIdentifier> commands;
    std::unique_ptr<CommandHotKeyRegistry> registry;
};

TEST_F(CommandHotKeyRegistryTest, NumbersInTheOrderOfIdentifiersAndGivesEverythingBack) {
    EXPECT_EQ(registerAll({{"window.restore", {51, 6144, "⌃⌥⌫"}},
                           {"window.center", {8, 6144, "⌃⌥C"}},
                           {"window.custom.A", {18, 6144, "⌃⌥1"}}}),
              "");
    registry.reset();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("InstallEventHandler", "RegisterEventHotKey 8 6144 as 100",
                            "RegisterEventHotKey 18 6144 as 101", "RegisterEventHotKey 51 6144 as 102",
                            "UnregisterEventHotKey 100", "UnregisterEventHotKey 101", "UnregisterEventHotKey 102",
                            "RemoveEventHandler"));
}

TEST_F(CommandHotKeyRegistryTest, RunsTheCommandAfterTheHandlerHasReturned) {
    registerAll({{"window.leftHalf", {123, 6144, "⌃⌥◀"}}, {"window.rightHalf", {124, 6144, "⌃⌥▶"}}});
    EXPECT_EQ(desktop.hotKeys.press(kVK_RightArrow, 6144), noErr);
    EXPECT_TRUE(commands.empty());
    desktop.mainQueue.run();
    EXPECT_THAT(commands, ElementsAre("window.rightHalf"));
}

TEST_F(CommandHotKeyRegistryTest, ReportsDuplicatesAndRefusalsAndGoesOn) {
    desktop.hotKeys.heldElsewhere.insert({8, 6144});
    EXPECT_EQ(registerAll({{"window.bottomLeft", {38, 6144, "⌃⌥J"}},
                           {"window.center", {8, 6144, "⌃⌥C"}},
                           {"window.custom.A", {38, 6144, "⌃⌥J"}},
                           {"window.custom.B", {38, 6144, "other text"}},
                           {"window.maximize", {36, 6144, "⌃⌥↵"}}}),
              "Failed to register window hotkey ⌃⌥C for window.center: -9878\n"
              "Skipped duplicate window hotkey ⌃⌥J for window.custom.A\n"
              "Failed to register window hotkey other text for window.custom.B: -9878\n");
    EXPECT_EQ(desktop.hotKeys.press(38, 6144), noErr);
    EXPECT_EQ(desktop.hotKeys.press(36, 6144), noErr);
    EXPECT_EQ(desktop.hotKeys.press(8, 6144), std::nullopt);
    desktop.mainQueue.run();
    EXPECT_THAT(commands, ElementsAre("window.bottomLeft", "window.maximize"));
    EXPECT_THAT(desktop.log.calls(), testing::Contains("RegisterEventHotKey 36 6144 as 104"))
        << "skipped and failed ones leave gaps";
}

TEST_F(CommandHotKeyRegistryTest, PassesOnPressesThatAreNotItsOwn) {
    registerAll({{"window.center", {8, 6144, "⌃⌥C"}}});
    EXPECT_EQ(desktop.hotKeys.deliver(std::nullopt), eventNotHandledErr);
    EXPECT_EQ(desktop.hotKeys.deliver(EventHotKeyID{.signature = 0x58585858, .id = 100}), eventNotHandledErr);
    EXPECT_EQ(desktop.hotKeys.deliver(EventHotKeyID{.signature = CommandHotKeyRegistry::signature, .id = 101}),
              eventNotHandledErr);
    EXPECT_EQ(desktop.hotKeys.deliver(EventHotKeyID{.signature = CommandHotKeyRegistry::signature, .id = 100}), noErr);
    desktop.mainQueue.run();
    EXPECT_THAT(commands, ElementsAre("window.center"));
}

TEST_F(CommandHotKeyRegistryTest, WithoutAHandlerRegistersNothing) {
    desktop.hotKeys.handlerStatus = -9860;
    EXPECT_EQ(registerAll({{"window.center", {8, 6144, "⌃⌥C"}}}), "Failed to install window hotkey handler: -9860\n");
    registry.reset();
    EXPECT_THAT(desktop.log.calls(), ElementsAre("InstallEventHandler")) << "and gives nothing back";
}

} // namespace
} // namespace brisk
