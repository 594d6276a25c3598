#include "desktop/support/input.h"
#include "desktop/window_access_scene.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string>

namespace brisk::desktop {
namespace {

using Kind = WindowManager::Kind;

class WindowPlacement : public testing::TestWithParam<Kind> {};

struct Row {
    const char* why;
    WindowDescription window;
};

const std::array placedExactly{
    Row{"decorated by the window manager", {}},
    Row{"drawing its own shadow", {.clientShadow = PixelExtents{.left = 26, .right = 26, .top = 23, .bottom = 29}}},
    Row{"maximized", {.isMaximized = true}},
    Row{"fullscreen", {.isFullscreen = true}},
    Row{"drawing its own shadow, maximized",
        {.clientShadow = PixelExtents{.left = 26, .right = 26, .top = 23, .bottom = 29}, .isMaximized = true}},
    Row{"a dialog", {.kind = WindowKind::dialog}},
};

struct PlacementResult {
    std::optional<CGRect> frame;
    std::optional<PixelRect> visibleFrame;
};

/// Writes the frame and reads it once. Only where that took so long that a wait within may have been given up, as
/// happens on a busy machine, what came of it says nothing, and it is done again.
PlacementResult placeUnhurried(WindowAccessScene& scene, const AXUIElementRef& element, xcb_window_t window,
                               const CGRect& target) {
    PlacementResult result;
    static_cast<void>(waitUntil([&] {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(scene.writeFrame(element, target));
        result = {.frame = scene.readFrame(element), .visibleFrame = scene.desktop.visibleFrame(window)};
        return std::chrono::steady_clock::now() - start < std::chrono::milliseconds(100) ||
               (result.frame == target && result.visibleFrame && toCGRect(*result.visibleFrame) == target);
    }));
    return result;
}

TEST_P(WindowPlacement, PutsTheVisibleFrameWhereItWasAskedTo) {
    WindowAccessScene scene(GetParam());
    for (const Row& row : placedExactly) {
        SCOPED_TRACE(row.why);
        const xcb_window_t window = scene.openInFront(row.window);
        const AXUIElementRef element = scene.focusedElement();
        ASSERT_TRUE(element);
        const CGRect before = toCGRect(*scene.desktop.visibleFrame(window));
        ASSERT_EQ(scene.frameOnceItIs(before, element), before);
        for (const PixelRect& target : {PixelRect{300, 200, 641, 479}, PixelRect{0, 0, 720, 900}}) {
            const PlacementResult result = placeUnhurried(scene, element, window, toCGRect(target));
            EXPECT_EQ(result.frame, toCGRect(target));
            EXPECT_EQ(result.visibleFrame, target) << "as others see it";
        }
        scene.client.close(window);
    }
}

TEST_P(WindowPlacement, NeighboursShareAnEdge) {
    WindowAccessScene scene(GetParam());
    const xcb_window_t window = scene.openInFront();
    const AXUIElementRef element = scene.focusedElement();
    ASSERT_TRUE(scene.writeFrame(element, {{0, 0}, {480.5, 449.5}}));
    const CGRect first{{0, 0}, {481, 450}};
    EXPECT_EQ(scene.frameOnceItIs(first, element), first);
    ASSERT_TRUE(scene.writeFrame(element, {{480.5, 449.5}, {480.5, 449.5}}));
    const CGRect second{{481, 450}, {480, 449}};
    EXPECT_EQ(scene.frameOnceItIs(second, element), second);
    EXPECT_EQ(toCGRect(*scene.desktop.visibleFrame(window)), second);
}

TEST_P(WindowPlacement, ReadsBackWhatTheWindowMadeOfIt) {
    WindowAccessScene scene(GetParam());
    const std::array rows{
        Row{"smallest size", {.minimumSize = PixelSize{.width = 600, .height = 500}}},
        Row{"whole character cells",
            {.sizeIncrements = PixelSize{.width = 7, .height = 13}, .baseSize = PixelSize{.width = 19, .height = 4}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.why);
        const xcb_window_t window = scene.openInFront(row.window);
        const AXUIElementRef element = scene.focusedElement();
        ASSERT_TRUE(scene.writeFrame(element, {{100, 100}, {405, 303}}));
        ASSERT_TRUE(waitUntil([&] { return scene.readFrame(element)->origin == CGPoint{100, 100}; }));
        scene.waitForRest(window);
        const auto frame = scene.readFrame(element);
        EXPECT_EQ(frame, toCGRect(*scene.desktop.visibleFrame(window)));
        if (row.window.minimumSize) {
            EXPECT_GE(frame->width(), row.window.minimumSize->width);
        }
        scene.client.close(window);
    }
}

TEST_P(WindowPlacement, MovesInOneStep) {
    WindowAccessScene scene(GetParam());
    const xcb_window_t window = scene.openInFront();
    const AXUIElementRef element = scene.focusedElement();
    ASSERT_TRUE(scene.writeFrame(element, {{50, 60}, {500, 400}}));
    ASSERT_TRUE(scene.readFrame(element));
    scene.waitForRest(window);
    scene.client.forgetRecords();

    const CGRect target{{320, 240}, {600, 300}};
    ASSERT_TRUE(scene.writeFrame(element, target));
    ASSERT_EQ(scene.frameOnceItIs(target, element), target);
    scene.waitForRest(window);
    const PixelExtents around = scene.desktop.decorations(window);
    const auto& configurations = scene.client.record(window).configurations;
    ASSERT_FALSE(configurations.empty());
    for (const auto& configuration : configurations) {
        EXPECT_EQ(configuration.rect.width, 600 - around.left - around.right);
        EXPECT_EQ(configuration.rect.height, 300 - around.top - around.bottom);
        if (configuration.isSynthetic) {
            EXPECT_NEAR(configuration.rect.x, 320 + around.left, 1);
        }
    }

    // Equal already: nothing is asked of anybody.
    scene.client.forgetRecords();
    ASSERT_TRUE(scene.writeFrame(element, target));
    ASSERT_TRUE(scene.readFrame(element));
    scene.waitForRest(window);
    EXPECT_TRUE(scene.client.record(window).configurations.empty());
}

TEST_P(WindowPlacement, SendsAPositionAloneAtTheEndOfTheTurn) {
    WindowAccessScene scene(GetParam());
    const xcb_window_t window = scene.openInFront();
    const AXUIElementRef element = scene.focusedElement();
    const PixelRect before = *scene.desktop.visibleFrame(window);
    ASSERT_EQ(scene.accessibility().AXUIElementSetAttributeValue(element, AXPosition, CGPoint{77, 88}),
              kAXErrorSuccess);
    scene.takeTurn();
    const PixelRect expected{77, 88, before.width, before.height};
    EXPECT_TRUE(waitUntil([&] { return scene.desktop.visibleFrame(window) == expected; }));
    EXPECT_EQ(scene.frameOnceItIs(toCGRect(expected), element), toCGRect(expected));
}

TEST(WindowPlacementOnKWin, TakesAWindowOutOfItsTile) {
    if (!isInstalled(WindowManager::programOf(Kind::kwin))) {
        GTEST_SKIP() << "only kwin holds windows in tiles that it does not tell of";
    }
    WindowAccessScene scene(Kind::kwin);
    const xcb_window_t window = scene.openInFront();
    const AXUIElementRef element = scene.focusedElement();
    const CGRect tile{{0, 0}, {720, 900}};
    Keyboard keyboard(scene.desktop);
    ASSERT_TRUE(waitUntil([&] {
        // Its shortcuts work some time after it has started.
        keyboard.press(Key::left, {Key::leftSuper});
        return waitUntil([&] { return scene.readFrame(element) == tile; }, std::chrono::seconds(1));
    }));
    for (const CGRect& target : {CGRect{{720, 0}, {720, 900}}, CGRect{{300, 200}, {500, 400}}}) {
        EXPECT_EQ(placeUnhurried(scene, element, window, target).frame, target);
    }
}

TEST_P(WindowPlacement, RefusesWhatTheWindowManagerForbids) {
    WindowAccessScene scene(GetParam());
    const PixelSize onlySize{.width = 300, .height = 200};
    const xcb_window_t window = scene.openInFront({.minimumSize = onlySize, .maximumSize = onlySize});
    ASSERT_TRUE(waitUntil([&] { return !scene.allows(window, "_NET_WM_ACTION_RESIZE"); }));
    const AXUIElementRef element = scene.focusedElement();
    const PixelRect before = *scene.desktop.visibleFrame(window);
    EXPECT_EQ(scene.accessibility().AXUIElementSetAttributeValue(element, AXPosition, CGPoint{90, 70}),
              kAXErrorSuccess);
    EXPECT_EQ(scene.accessibility().AXUIElementSetAttributeValue(element, AXSize, CGSize{500, 500}),
              kAXErrorCannotComplete);
    const CGRect moved = toCGRect({90, 70, before.width, before.height});
    EXPECT_EQ(scene.frameOnceItIs(moved, element), moved) << "the position, which was accepted, is taken all the same";
}

TEST_P(WindowPlacement, IsNotHeldUpByAHungApplication) {
    WindowAccessScene scene(GetParam());
    const std::array windows{WindowDescription{}};
    Process process = startTestClient(scene.server.environment(), windows);
    const xcb_window_t window = testClientWindows(process, 1).front();
    ASSERT_TRUE(scene.waitInFront(window));
    process.pause();

    const auto start = std::chrono::steady_clock::now();
    const AXUIElementRef element = scene.focusedElement();
    ASSERT_TRUE(element);
    ASSERT_TRUE(scene.writeFrame(element, {{200, 100}, {700, 500}}));
    EXPECT_TRUE(scene.readFrame(element));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    process.resume();
}

TEST_P(WindowPlacement, IsNotHeldUpByAHungWindowManager) {
    WindowAccessScene scene(GetParam());
    scene.openInFront();
    const AXUIElementRef element = scene.focusedElement();
    scene.windowManager.process().pause();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(scene.writeFrame(element, {{200, 100}, {700, 500}}));
    EXPECT_TRUE(scene.readFrame(element));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    scene.windowManager.process().resume();
}

TEST_P(WindowPlacement, NothingMovesWithoutAWindowManager) {
    WindowAccessScene scene(GetParam());
    const xcb_window_t window = scene.openInFront();
    const AXUIElementRef element = scene.focusedElement();
    EXPECT_TRUE(scene.accessibility().AXIsProcessTrusted());
    scene.windowManager.kill();
    ASSERT_TRUE(waitUntil([&] {
        scene.takeTurn();
        return !scene.accessibility().AXIsProcessTrusted();
    }));
    EXPECT_EQ(scene.accessibility().AXUIElementSetAttributeValue(element, AXPosition, CGPoint{10, 10}),
              kAXErrorCannotComplete);
    EXPECT_EQ(scene.accessibility().AXUIElementSetAttributeValue(element, AXSize, CGSize{300, 300}),
              kAXErrorCannotComplete);

    // The next one finds the windows where they are, and they are still the same windows.
    scene.windowManager.start();
    ASSERT_TRUE(scene.waitInFront(window, WindowAccessScene::Activation::requested));
    EXPECT_TRUE(scene.accessibility().AXIsProcessTrusted());
    EXPECT_EQ(scene.role(element), kAXErrorSuccess);
    const CGRect target{{200, 100}, {700, 500}};
    ASSERT_TRUE(scene.writeFrame(element, target));
    EXPECT_EQ(scene.frameOnceItIs(target, element), target);
}

std::string programName(const testing::TestParamInfo<Kind>& info) {
    return WindowManager::programOf(info.param);
}

INSTANTIATE_TEST_SUITE_P(On, WindowPlacement, testing::ValuesIn(WindowManager::kindsToTest()), programName);

} // namespace
} // namespace brisk::desktop
