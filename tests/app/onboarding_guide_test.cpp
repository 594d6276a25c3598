#include "app/onboarding_guide.h"

#include "platform/simulated/desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace brisk {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class OnboardingGuideTest : public testing::Test {
protected:
    std::vector<std::string> takeEffects() { return std::exchange(effects, {}); }

    simulated::Desktop desktop;
    std::vector<std::string> effects;
    std::shared_ptr<OnboardingGuide> guide = std::make_shared<OnboardingGuide>(
        desktop.accessibility, desktop.mainQueue,
        OnboardingGuide::Callbacks{.onStepShown =
                                       [this] {
                                           effects.push_back(onboardingText(guide->step()).windowTitle + " | " +
                                                             guide->primaryButtonTitle() + " | " + guide->statusText());
                                       },
                                   .onClose = [this] { effects.emplace_back("close"); }});
};

TEST_F(OnboardingGuideTest, LeadsThroughItsStepsAndCloses) {
    guide->begin();
    guide->advance();
    guide->advance();
    guide->advance();
    EXPECT_THAT(takeEffects(),
                ElementsAre("Welcome to Brisk | Continue | ", "Permission | Continue | Permission granted.",
                            "You're Set | Done | ", "close"));
    EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U) << "nothing is looked for after the permission step";
}

TEST_F(OnboardingGuideTest, WaitsForThePermissionAndMovesOnByItself) {
    desktop.accessibility.isTrusted = false;
    guide->begin();
    EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U);
    guide->advance();
    EXPECT_THAT(takeEffects(), ElementsAre("Welcome to Brisk | Continue | ",
                                           "Permission | Open System Settings | Waiting for permission…"));
    desktop.log.clear();
    guide->advance();
    guide->advance();
    EXPECT_THAT(desktop.log.calls(), testing::Contains("AXIsProcessTrustedWithOptions prompt").Times(2));
    desktop.mainQueue.advance(1700ms);
    EXPECT_THAT(takeEffects(), IsEmpty()) << "a look that finds nothing shows nothing";

    desktop.accessibility.isTrusted = true;
    desktop.mainQueue.advance(299ms);
    EXPECT_THAT(takeEffects(), IsEmpty());
    desktop.mainQueue.advance(1ms);
    EXPECT_THAT(takeEffects(), ElementsAre("You're Set | Done | "));
    EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U);
}

TEST_F(OnboardingGuideTest, AClosedWindowLooksNoMore) {
    desktop.accessibility.isTrusted = false;
    guide->begin();
    guide->advance();
    guide->windowWillClose();
    desktop.accessibility.isTrusted = true;
    takeEffects();
    desktop.mainQueue.advance(5s);
    EXPECT_THAT(takeEffects(), IsEmpty());
}

TEST(OnboardingShortcuts, AreDefaultsInAFixedOrder) {
    EXPECT_THAT(onboardingShortcuts(),
                ElementsAre(OnboardingShortcut{"⌃⌥◀", "Left Half"}, OnboardingShortcut{"⌃⌥▶", "Right Half"},
                            OnboardingShortcut{"⌃⌥↵", "Maximize"}, OnboardingShortcut{"⌃⌥C", "Center"},
                            OnboardingShortcut{"⌃⌥⌫", "Restore Window"}));
}

} // namespace
} // namespace brisk
