#include "windows/window_accessibility.h"

#include "platform/simulated/desktop.h"
#include "support/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace brisk {
namespace {

using testing::ElementsAre;

class WindowAccessibilityTest : public testing::Test {
protected:
    simulated::Desktop desktop;
    simulated::ApplicationRef application = desktop.launch("Editor");
    simulated::WindowRef back = simulated::Desktop::openWindow(application, {{10, 20}, {300, 200}});
    simulated::WindowRef front = simulated::Desktop::openWindow(application, {{30, 40}, {500, 400}});
    WindowAccessibility windows{desktop.accessibility};

    std::optional<AXUIElementRef> focused() {
        return windows.focusedWindow(
            desktop.accessibility.AXUIElementCreateApplication(application->processIdentifier()));
    }
    static AXUIElementRef element(const simulated::WindowRef& window) {
        return simulated::Accessibility::elementOf(window);
    }
};

TEST_F(WindowAccessibilityTest, FocusedWindowFallsBackToTheFirstWindow) {
    const AXUIElementRef frontElement = element(front);
    const AXUIElementRef backElement = element(back);
    struct Row {
        const char* why;
        std::optional<AXAttributeValue> focused;
        std::optional<AXAttributeValue> all;
        AXUIElementRef expected;
    };
    for (const Row& row : {
             Row{"the truth", {}, {}, frontElement},
             Row{"the focused one, though another is in front",
                 AXAttributeValue{.value = backElement},
                 {},
                 backElement},
             Row{"an error", AXAttributeValue{.error = kAXErrorCannotComplete}, {}, frontElement},
             Row{"an error with a value beside it",
                 AXAttributeValue{.error = kAXErrorFailure, .value = backElement},
                 {},
                 frontElement},
             Row{"nothing", AXAttributeValue{}, {}, frontElement},
             Row{"something that is no element", AXAttributeValue{.value = std::string("window")}, {}, frontElement},
             Row{"nothing, and no list either", AXAttributeValue{}, AXAttributeValue{.error = kAXErrorFailure},
                 nullptr},
             Row{"nothing, and an empty list", AXAttributeValue{},
                 AXAttributeValue{.value = std::vector<AXUIElementRef>{}}, nullptr},
             Row{"nothing, and no list at all", AXAttributeValue{}, AXAttributeValue{.value = frontElement}, nullptr},
         }) {
        SCOPED_TRACE(row.why);
        application->focusedWindowAnswer = row.focused;
        application->windowsAnswer = row.all;
        const auto found = focused();
        ASSERT_EQ(found.has_value(), row.expected != nullptr);
        if (found) {
            EXPECT_TRUE(CFEqual(*found, row.expected));
        }
    }
}

TEST_F(WindowAccessibilityTest, FrameNeedsPositionAndSize) {
    EXPECT_EQ(windows.readFrame(element(front)), front->frame);
    front->sizeReadError = kAXErrorCannotComplete;
    EXPECT_EQ(windows.readFrame(element(front)), std::nullopt);
    front->sizeReadError = kAXErrorSuccess;
    front->positionReadError = kAXErrorFailure;
    EXPECT_EQ(windows.readFrame(element(front)), std::nullopt);
}

TEST_F(WindowAccessibilityTest, WriteAsksForBothWhateverTheFirstAnswers) {
    constexpr CGRect target{.origin = {1, 2}, .size = {333, 222}};
    front->positionWriteError = kAXErrorCannotComplete;
    EXPECT_FALSE(windows.writeFrame(element(front), target));
    EXPECT_EQ(front->frame, (CGRect{{30, 40}, {333, 222}})) << "the size was accepted all the same";
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("AXUIElementSetAttributeValue AXPosition", "AXUIElementSetAttributeValue AXSize"));

    front->positionWriteError = kAXErrorSuccess;
    front->sizeWriteError = kAXErrorFailure;
    EXPECT_FALSE(windows.writeFrame(element(front), target));
    front->sizeWriteError = kAXErrorSuccess;
    EXPECT_TRUE(windows.writeFrame(element(front), target));
    EXPECT_EQ(front->frame, target);

    desktop.log.clear();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(windows.writeFrame(element(front), {{1, 2}, {notANumber, 2}}));
    EXPECT_TRUE(desktop.log.calls().empty()) << "what cannot be wrapped is not half written";
}

TEST_F(WindowAccessibilityTest, OnlyAVanishedWindowIsInvalid) {
    EXPECT_FALSE(windows.isInvalid(element(front)));
    EXPECT_FALSE(
        windows.isInvalid(desktop.accessibility.AXUIElementCreateApplication(application->processIdentifier())))
        << "another error, here an attribute that is not supported, says nothing about existence";
    front->exists = false;
    EXPECT_TRUE(windows.isInvalid(element(front)));
}

TEST(WindowCoordinates, AreFlippedAtThePrimaryDisplaysTop) {
    constexpr CGRect primary{.origin = {0, 0}, .size = {1728, 1117}};
    struct Row {
        const char* why;
        CGRect accessibility;
        CGRect appKit;
    };
    for (const Row& row : {
             Row{"on the primary display", {{100, 50}, {800, 600}}, {{100, 467}, {800, 600}}},
             Row{"on one above it", {{0, -900}, {640, 400}}, {{0, 1617}, {640, 400}}},
             Row{"on one to its left and below", {{-500, 1200}, {10, 10}}, {{-500, -93}, {10, 10}}},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(toAppKitFrame(row.accessibility, primary), row.appKit);
        EXPECT_EQ(toAccessibilityFrame(row.appKit, primary), row.accessibility);
    }
}

TEST(ScreenContaining, CentreFirstThenOverlapThenTheFirst) {
    const ScreenInfo a{.frame = {{0, 0}, {1000, 800}}};
    const ScreenInfo b{.frame = {{1000, 0}, {1000, 800}}};
    const ScreenInfo small{.frame = {{400, 1000}, {100, 100}}};
    struct Row {
        const char* why;
        std::vector<ScreenInfo> screens;
        CGRect frame;
        std::optional<ScreenInfo> expected;
    };
    for (const Row& row : {
             Row{"centre on b", {a, b}, {{700, 100}, {700, 100}}, b},
             Row{"centre on the small one, though it overlaps a more", {a, small}, {{0, 700}, {900, 700}}, small},
             Row{"centre on the shared edge", {a, b}, {{900, 0}, {200, 100}}, b},
             Row{"centre on neither, more of b", {a, b}, {{900, 700}, {300, 300}}, b},
             Row{"centre on neither, equal overlaps", {b, a}, {{900, 700}, {200, 300}}, b},
             Row{"touches nothing", {a, b}, {{5000, 5000}, {10, 10}}, a},
             Row{"one display", {b}, {{-5000, 0}, {10, 10}}, b},
             Row{"no display", {}, {{0, 0}, {10, 10}}, std::nullopt},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(screenContaining(row.frame, row.screens), row.expected);
    }
}

} // namespace
} // namespace brisk
