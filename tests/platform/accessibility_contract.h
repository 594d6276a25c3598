#pragma once

#include "platform/accessibility_platform.h"
#include "platform/workspace.h"
#include "support/printing.h"
#include "windows/window_accessibility.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace brisk {

/// What the contract needs of a desktop besides access to its windows: applications that come and go. Each call returns
/// once what it did is known to the platform.
class DesktopUnderTest {
public:
    using WindowToken = std::uint64_t;
    struct WindowRequest {
        /// Accessibility coordinates.
        CGRect frame;
        CGSize minimumSize{.width = 1, .height = 1};
        bool isResizable = true;
    };
    struct LaunchedApplication {
        ProcessIdentifier processIdentifier = 0;
        std::vector<WindowToken> windows;
    };

    virtual ~DesktopUnderTest() = default;
    virtual AccessibilityPlatform& accessibility() = 0;
    virtual Workspace& workspace() = 0;

    /// Starts an application with windows of these frames, each in front of the one before, and brings it to the front.
    virtual LaunchedApplication launchInFront(const std::vector<WindowRequest>& windows) = 0;
    virtual void closeWindow(const LaunchedApplication& application, WindowToken window) = 0;
    virtual void quit(const LaunchedApplication& application) = 0;
    /// AppKit coordinates, primary display first, all of it usable; within 1600 × 900 points.
    virtual void setDisplays(const std::vector<CGRect>& frames) = 0;
};

/// What every `AccessibilityPlatform` with its `Workspace` does. A platform's tests include this header once and
/// instantiate the suite with a factory of its own:
///     INSTANTIATE_TEST_SUITE_P(X11, AccessibilityContract, ::testing::Values([] { return ...; }));
class AccessibilityContract : public ::testing::TestWithParam<std::function<std::unique_ptr<DesktopUnderTest>()>> {
protected:
    static constexpr CGRect firstFrame{{100, 120}, {400, 300}};
    static constexpr CGRect secondFrame{{220, 180}, {500, 350}};

    AccessibilityContract() : desktop_(GetParam()()), windows_(desktop_->accessibility()) {}

    DesktopUnderTest& desktop() { return *desktop_; }
    AccessibilityPlatform& accessibility() { return desktop_->accessibility(); }
    const WindowAccessibility& windows() const { return windows_; }

    AXAttributeValue copyAttribute(const AXUIElementRef& element, std::string_view attribute) {
        return accessibility().AXUIElementCopyAttributeValue(element, attribute);
    }
    AXUIElementRef application(ProcessIdentifier processIdentifier) {
        return accessibility().AXUIElementCreateApplication(processIdentifier);
    }
    /// The element in the application's "AXFocusedWindow", null where that is something else.
    AXUIElementRef focusedWindow(ProcessIdentifier processIdentifier) {
        const auto focused = copyAttribute(application(processIdentifier), AXFocusedWindow);
        const auto* element = std::get_if<AXUIElementRef>(&focused.value);
        return focused.error == kAXErrorSuccess && element != nullptr ? *element : nullptr;
    }
    std::optional<CGRect> focusedFrame(ProcessIdentifier processIdentifier) {
        const auto window = focusedWindow(processIdentifier);
        return window ? windows_.readFrame(window) : std::nullopt;
    }
    /// The window's frame once it is as expected. A read waits for the end of a move, yet not for ever: on a busy
    /// machine a slow desktop may take longer, and the last of the reads counts.
    template <class Condition>
    std::optional<CGRect> frameOnce(const Condition& isExpected, const AXUIElementRef& window) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        auto frame = windows_.readFrame(window);
        while (frame && !isExpected(*frame) && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            frame = windows_.readFrame(window);
        }
        return frame;
    }
    std::optional<CGRect> frameOnceItIs(const CGRect& expected, const AXUIElementRef& window) {
        return frameOnce([&](const CGRect& frame) { return frame == expected; }, window);
    }

private:
    std::unique_ptr<DesktopUnderTest> desktop_;
    WindowAccessibility windows_;
};

TEST_P(AccessibilityContract, EveryApplicationHasItsFocusedWindowAndOneIsInFront) {
    const auto behind = desktop().launchInFront({{firstFrame}, {secondFrame}});
    const auto inFront = desktop().launchInFront({{{{300, 200}, {600, 400}}}});
    const auto frontmost = desktop().workspace().frontmostApplication();
    ASSERT_TRUE(frontmost);
    EXPECT_EQ(frontmost->processIdentifier(), inFront.processIdentifier);
    EXPECT_FALSE(frontmost->isTerminated());
    EXPECT_EQ(focusedFrame(inFront.processIdentifier), (CGRect{{300, 200}, {600, 400}}));
    EXPECT_EQ(focusedFrame(behind.processIdentifier), secondFrame);

    const auto all = copyAttribute(application(behind.processIdentifier), AXWindows);
    const auto* elements = std::get_if<std::vector<AXUIElementRef>>(&all.value);
    ASSERT_TRUE(all.error == kAXErrorSuccess && elements != nullptr && elements->size() == 2);
    EXPECT_EQ(windows().readFrame(elements->front()), secondFrame) << "frontmost first";
    EXPECT_EQ(windows().readFrame(elements->back()), firstFrame);
    EXPECT_TRUE(CFEqual(elements->front(), focusedWindow(behind.processIdentifier)));
    EXPECT_EQ(CFHash(elements->front()), CFHash(focusedWindow(behind.processIdentifier)));
    EXPECT_FALSE(CFEqual(elements->front(), elements->back()));
    EXPECT_FALSE(CFEqual(application(behind.processIdentifier), application(inFront.processIdentifier)));
}

TEST_P(AccessibilityContract, AWrittenFrameIsReadBack) {
    const auto launched = desktop().launchInFront({{firstFrame}});
    const auto window = focusedWindow(launched.processIdentifier);
    for (const CGRect& frame : {CGRect{{0, 0}, {800, 900}}, CGRect{{333, 77}, {801, 503}}, firstFrame}) {
        EXPECT_TRUE(windows().writeFrame(window, frame));
        EXPECT_EQ(frameOnceItIs(frame, window), frame);
    }
    // One without the other.
    EXPECT_EQ(accessibility().AXUIElementSetAttributeValue(window, AXPosition, CGPoint{50, 60}), kAXErrorSuccess);
    const CGRect moved{{50, 60}, firstFrame.size};
    EXPECT_EQ(frameOnceItIs(moved, window), moved);
    EXPECT_EQ(accessibility().AXUIElementSetAttributeValue(window, AXSize, CGSize{640, 480}), kAXErrorSuccess);
    const CGRect resized{{50, 60}, {640, 480}};
    EXPECT_EQ(frameOnceItIs(resized, window), resized);
    EXPECT_EQ(accessibility().AXUIElementSetAttributeValue(window, AXSize, CGPoint{10, 10}), kAXErrorIllegalArgument);
}

TEST_P(AccessibilityContract, AWindowMayTakeMoreOrNothing) {
    const auto launched =
        desktop().launchInFront({{.frame = firstFrame, .isResizable = false},
                                 {.frame = secondFrame, .minimumSize = {.width = 450, .height = 320}}});
    const auto clamped = focusedWindow(launched.processIdentifier);
    EXPECT_TRUE(windows().writeFrame(clamped, {{10, 20}, {200, 700}})) << "accepted, though not all of it taken";
    const auto frame = frameOnce([](const CGRect& now) { return now.height() == 700; }, clamped);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->origin, (CGPoint{10, 20}));
    EXPECT_GE(frame->width(), 450);
    EXPECT_EQ(frame->height(), 700);

    desktop().closeWindow(launched, launched.windows[1]);
    const auto fixed = focusedWindow(launched.processIdentifier);
    ASSERT_TRUE(fixed);
    EXPECT_FALSE(windows().writeFrame(fixed, {{70, 80}, {333, 222}}));
    const CGRect moved{{70, 80}, firstFrame.size};
    EXPECT_EQ(frameOnceItIs(moved, fixed), moved) << "the position was not refused";
}

TEST_P(AccessibilityContract, AClosedWindowIsInvalidForEver) {
    const auto launched = desktop().launchInFront({{firstFrame}, {secondFrame}});
    const auto closed = focusedWindow(launched.processIdentifier);
    EXPECT_FALSE(windows().isInvalid(closed));
    desktop().closeWindow(launched, launched.windows[1]);
    const auto other = desktop().launchInFront({{secondFrame}});
    EXPECT_TRUE(windows().isInvalid(closed));
    for (const auto attribute : {AXRole, AXPosition, AXSize}) {
        EXPECT_EQ(copyAttribute(closed, attribute).error, kAXErrorInvalidUIElement);
    }
    EXPECT_EQ(accessibility().AXUIElementSetAttributeValue(closed, AXPosition, CGPoint{1, 2}),
              kAXErrorInvalidUIElement);
    EXPECT_FALSE(CFEqual(closed, focusedWindow(other.processIdentifier)));
    EXPECT_EQ(focusedFrame(launched.processIdentifier), firstFrame) << "the next one has the focus";
}

TEST_P(AccessibilityContract, AnApplicationThatIsGoneHasNoWindows) {
    const auto launched = desktop().launchInFront({{firstFrame}});
    const auto running = desktop().workspace().frontmostApplication();
    const auto element = application(launched.processIdentifier);
    desktop().quit(launched);
    ASSERT_TRUE(running);
    EXPECT_TRUE(running->isTerminated());
    EXPECT_EQ(copyAttribute(element, AXFocusedWindow).error, kAXErrorInvalidUIElement);
    EXPECT_EQ(copyAttribute(element, AXWindows).error, kAXErrorInvalidUIElement);
    constexpr ProcessIdentifier nobody = std::numeric_limits<ProcessIdentifier>::max();
    ASSERT_TRUE(application(nobody)) << "never absent";
    EXPECT_NE(copyAttribute(application(nobody), AXFocusedWindow).error, kAXErrorSuccess);
}

TEST_P(AccessibilityContract, OnlyNumbersAreWrapped) {
    for (const double broken : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(accessibility().AXValueCreate(CGPoint{broken, 0}));
        EXPECT_FALSE(accessibility().AXValueCreate(CGPoint{0, -broken}));
        EXPECT_FALSE(accessibility().AXValueCreate(CGSize{10, broken}));
    }
    EXPECT_EQ(accessibility().AXValueCreate(CGPoint{-900.5, 12}), AXValue(CGPoint{-900.5, 12}));
    EXPECT_EQ(accessibility().AXValueCreate(CGSize{900.5, 12}), AXValue(CGSize{900.5, 12}));
}

TEST_P(AccessibilityContract, ThePrimaryDisplayIsTheOriginOfBothSpaces) {
    constexpr CGRect primary{{0, 0}, {800, 700}};
    constexpr CGRect secondary{{-800, -100}, {800, 900}};
    desktop().setDisplays({primary, secondary});
    EXPECT_EQ(accessibility().screens(), (std::vector<ScreenInfo>{{primary, primary}, {secondary, secondary}}));

    const auto launched = desktop().launchInFront({{firstFrame}});
    const auto window = focusedWindow(launched.processIdentifier);
    // The secondary display's left half, as a layout gives it.
    constexpr CGRect target{{-800, -100}, {400, 900}};
    const CGRect written = toAccessibilityFrame(target, primary);
    EXPECT_TRUE(windows().writeFrame(window, written));
    EXPECT_EQ(frameOnceItIs(written, window), written);
}

} // namespace brisk
