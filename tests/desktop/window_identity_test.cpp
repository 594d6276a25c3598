#include "desktop/support/input.h"
#include "desktop/window_access_scene.h"
#include "windows/window_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <vector>

namespace brisk::desktop {
namespace {

/// An application in a process of its own, with its windows in the order of their creation.
struct Application {
    Application(WindowAccessScene& scene, const std::vector<WindowDescription>& descriptions)
        : process(startTestClient(scene.server.environment(), descriptions)),
          windows(testClientWindows(process, descriptions.size())) {}

    Process process;
    std::vector<xcb_window_t> windows;
};

ProcessIdentifier frontmostProcess(WindowAccessScene& scene) {
    scene.takeTurn();
    const auto application = scene.brisk->workspace().frontmostApplication();
    return application ? application->processIdentifier() : 0;
}

AXAttributeValue copyApplicationAttribute(WindowAccessScene& scene, ProcessIdentifier process, std::string_view name) {
    scene.takeTurn();
    auto& accessibility = scene.accessibility();
    return accessibility.AXUIElementCopyAttributeValue(accessibility.AXUIElementCreateApplication(process), name);
}

CGRect focusedFrameOf(WindowAccessScene& scene, ProcessIdentifier process) {
    const auto focused = copyApplicationAttribute(scene, process, AXFocusedWindow);
    const auto* element = std::get_if<AXUIElementRef>(&focused.value);
    return element != nullptr ? scene.readFrame(*element).value_or(CGRect{}) : CGRect{};
}

TEST(WindowIdentity, AWindowThatGetsTheIDOfAnotherIsNotTheOther) {
    WindowAccessScene scene;
    const xcb_window_t first = scene.openInFront();
    const AXUIElementRef firstElement = scene.focusedElement();
    ASSERT_EQ(scene.role(firstElement), kAXErrorSuccess);
    EXPECT_TRUE(CFEqual(firstElement, scene.focusedElement())) << "the same window is the same element";

    // Destroyed and created again with the same id in one go, as a client's library does that hands ids out anew.
    DesktopConnection& client = scene.client.connection();
    xcb_destroy_window(client.xcb(), first);
    const std::uint32_t background = 0xFFFFFF;
    xcb_create_window(client.xcb(), XCB_COPY_FROM_PARENT, first, client.root(), 40, 40, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &background);
    xcb_map_window(client.xcb(), first);
    client.synchronize();
    ASSERT_TRUE(scene.waitInFront(first, WindowAccessScene::Activation::requested));

    const AXUIElementRef secondElement = scene.focusedElement();
    ASSERT_TRUE(secondElement);
    EXPECT_FALSE(CFEqual(firstElement, secondElement));
    EXPECT_EQ(scene.role(firstElement), kAXErrorInvalidUIElement);
    EXPECT_EQ(scene.accessibility().AXUIElementCopyAttributeValue(firstElement, AXPosition).error,
              kAXErrorInvalidUIElement);
    EXPECT_EQ(scene.accessibility().AXUIElementSetAttributeValue(firstElement, AXSize, CGSize{200, 200}),
              kAXErrorInvalidUIElement);
    EXPECT_EQ(scene.role(secondElement), kAXErrorSuccess);
}

TEST(WindowIdentity, AWithdrawnWindowStaysTheSame) {
    WindowAccessScene scene;
    const xcb_window_t window = scene.openInFront();
    const AXUIElementRef element = scene.focusedElement();
    xcb_connection_t* client = scene.client.connection().xcb();
    xcb_unmap_window(client, window);
    scene.client.connection().synchronize();
    ASSERT_TRUE(waitUntil([&] { return scene.desktop.clients().empty(); }));
    EXPECT_EQ(scene.role(element), kAXErrorSuccess);
    xcb_map_window(client, window);
    scene.client.connection().synchronize();
    ASSERT_TRUE(scene.waitInFront(window, WindowAccessScene::Activation::requested));
    EXPECT_TRUE(CFEqual(element, scene.focusedElement()));
}

TEST(WindowIdentity, AWindowMayVanishBeforeAnyRequest) {
    WindowAccessScene scene;
    // The step of a command before which the window goes; nothing of it has been told to the program by then.
    enum Step { read, write, writeSize, readBack };
    for (const Step step : {read, write, writeSize, readBack}) {
        SCOPED_TRACE(step);
        const xcb_window_t window = scene.openInFront();
        const AXUIElementRef element = scene.focusedElement();
        auto& accessibility = scene.accessibility();
        const auto vanishBefore = [&](Step next) {
            if (next == step) {
                xcb_destroy_window(scene.client.connection().xcb(), window);
                scene.client.connection().synchronize();
            }
        };
        vanishBefore(read);
        EXPECT_EQ(scene.readFrame(element).has_value(), step != read);
        vanishBefore(write);
        accessibility.AXUIElementSetAttributeValue(element, AXPosition, CGPoint{30, 40});
        vanishBefore(writeSize);
        accessibility.AXUIElementSetAttributeValue(element, AXSize, CGSize{500, 400});
        vanishBefore(readBack);
        EXPECT_EQ(scene.readFrame(element), std::nullopt);
        EXPECT_EQ(scene.role(element), kAXErrorInvalidUIElement);
        EXPECT_FALSE(scene.brisk->isBroken());
    }
}

TEST(RunningApplications, AreTheProcessesThatOwnTheWindows) {
    WindowAccessScene scene;
    const Application liar(scene, {{.className = "Liar", .claimedProcessID = 1}});
    ASSERT_TRUE(scene.waitInFront(liar.windows[0]));
    EXPECT_EQ(frontmostProcess(scene), liar.process.id()) << "what the server knows, not what the window claims";
    const auto application = scene.brisk->workspace().frontmostApplication();
    EXPECT_EQ(application->localizedName(), "Liar") << "no desktop entry, so the class";

    scene.openInFront();
    EXPECT_EQ(frontmostProcess(scene), getpid());
    EXPECT_EQ(scene.brisk->workspace().processIdentifier(), getpid());
}

TEST(RunningApplications, HaveAFocusedWindowWithoutBeingInFront) {
    WindowAccessScene scene;
    const std::vector<WindowDescription> descriptions{
        {.client = {100, 100, 300, 200}}, {.client = {150, 150, 310, 210}}, {.client = {200, 200, 320, 220}}};
    Application application(scene, descriptions);
    const auto frameOf = [&](int index) {
        return toCGRect(*scene.desktop.visibleFrame(application.windows[static_cast<std::size_t>(index)]));
    };
    // New windows come to the front by themselves, the last one last.
    ASSERT_TRUE(scene.waitInFront(application.windows[2]));
    for (const std::size_t index : {0U, 2U, 1U}) {
        ASSERT_TRUE(scene.waitInFront(application.windows[index], WindowAccessScene::Activation::requested));
        // Seen, so that the order is known.
        EXPECT_EQ(focusedFrameOf(scene, application.process.id()), frameOf(static_cast<int>(index)));
    }
    scene.openInFront();
    EXPECT_EQ(frontmostProcess(scene), getpid());
    EXPECT_EQ(focusedFrameOf(scene, application.process.id()), frameOf(1)) << "the one that was active last";

    xcb_destroy_window(scene.desktop.xcb(), application.windows[1]);
    scene.desktop.synchronize();
    EXPECT_EQ(focusedFrameOf(scene, application.process.id()), frameOf(2)) << "and before that";
}

TEST(RunningApplications, PanelsDesktopsAndPopUpsAreNobodysFocusedWindow) {
    WindowAccessScene scene;
    Application panels(scene, {{.client = {0, 0, 1440, 30}, .kind = WindowKind::dock},
                               {.client = {0, 0, 1440, 900}, .kind = WindowKind::desktop},
                               {.client = {10, 10, 50, 50}, .overridesRedirect = true}});
    ASSERT_TRUE(waitUntil([&] { return scene.desktop.isManaged(panels.windows[1]); }));
    scene.takeTurn();
    EXPECT_EQ(copyApplicationAttribute(scene, panels.process.id(), AXFocusedWindow).error, kAXErrorNoValue);
    for (const auto window : panels.windows) {
        // Whatever the focus does.
        xcb_set_input_focus(scene.desktop.xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        scene.desktop.setCardinals(scene.desktop.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window});
        scene.desktop.synchronize();
        EXPECT_EQ(frontmostProcess(scene), 0);
    }
    const xcb_window_t window = scene.openInFront();
    EXPECT_EQ(frontmostProcess(scene), getpid());
    scene.client.close(window);
}

TEST(RunningApplications, AreFoundByTheFocusWhereNoWindowManagerNamesThem) {
    WindowAccessScene scene;
    Application application(scene, {{}});
    ASSERT_TRUE(scene.waitInFront(application.windows[0]));
    scene.windowManager.kill();
    xcb_delete_property(scene.desktop.xcb(), scene.desktop.root(), scene.desktop.atom("_NET_ACTIVE_WINDOW"));
    EXPECT_TRUE(waitUntil([&] {
        xcb_set_input_focus(scene.desktop.xcb(), XCB_INPUT_FOCUS_PARENT, application.windows[0], XCB_CURRENT_TIME);
        scene.desktop.synchronize();
        return frontmostProcess(scene) == application.process.id();
    }));
}

TEST(HostileProperties, AreNotTakenForMoreThanTheyAre) {
    WindowAccessScene scene;
    const xcb_window_t window = scene.openInFront();
    const AXUIElementRef element = scene.focusedElement();
    const PixelRect client = *scene.desktop.clientRect(window);
    const PixelExtents decorations = scene.desktop.decorations(window);
    constexpr std::uint32_t huge = std::numeric_limits<std::uint32_t>::max();
    struct Row {
        const char* why;
        const char* property;
        xcb_atom_t type;
        std::vector<std::uint32_t> items;
    };
    const CGRect frame = *scene.readFrame(element);
    const auto screens = scene.accessibility().screens();
    for (const Row& row : {
             Row{"a shadow larger than the window", "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {600, 600, 600, 600}},
             Row{"numbers that overflow", "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {huge, huge, huge, huge}},
             Row{"too few numbers", "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {5}},
             Row{"of another type", "_GTK_FRAME_EXTENTS", XCB_ATOM_ATOM, {5, 5, 5, 5}},
             Row{"a strut over everything", "_NET_WM_STRUT", XCB_ATOM_CARDINAL, {1440, 1440, 900, 900}},
             Row{"a strut beyond numbers", "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL,
                 std::vector<std::uint32_t>(12, huge)},
             Row{"a strut cut short", "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, {0, 0, 100}},
             Row{"a window list of nonsense", "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                 std::vector<std::uint32_t>(9000, 1)},
         }) {
        SCOPED_TRACE(row.why);
        scene.desktop.setCardinals(window, row.property, row.type, row.items);
        scene.desktop.synchronize();
        scene.takeTurn();
        EXPECT_EQ(scene.readFrame(element), frame);
        EXPECT_EQ(scene.accessibility().screens(), screens);
        xcb_delete_property(scene.desktop.xcb(), window, scene.desktop.atom(row.property));
    }
    // The canary: believable numbers do count.
    scene.desktop.setCardinals(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {5, 6, 7, 8});
    scene.desktop.synchronize();
    scene.takeTurn();
    EXPECT_EQ(scene.readFrame(element), toCGRect({client.x - decorations.left + 5, client.y - decorations.top + 7,
                                                  client.width + decorations.left + decorations.right - 11,
                                                  client.height + decorations.top + decorations.bottom - 15}));

    // Lists of windows that are not there, of the root window and of ours.
    scene.desktop.setCardinals(scene.desktop.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW,
                               {0, 1, huge, scene.desktop.root(), window, window});
    scene.desktop.setCardinals(scene.desktop.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {huge});
    scene.desktop.synchronize();
    EXPECT_EQ(frontmostProcess(scene), 0);
    EXPECT_EQ(scene.role(element), kAXErrorSuccess);
}

TEST(Trust, IsExplainedOnlyWhereNoWindowManagerComesUp) {
    using std::chrono::milliseconds;
    struct Row {
        const char* why;
        bool comesUp;
        int explanations;
    };
    for (const Row& row : {Row{"none comes", false, 1}, Row{"late at login", true, 0}}) {
        SCOPED_TRACE(row.why);
        WindowAccessScene scene;
        scene.windowManager.kill();
        ASSERT_TRUE(waitUntil([&] {
            scene.takeTurn();
            return !scene.accessibility().AXIsProcessTrusted();
        }));
        EXPECT_FALSE(scene.accessibility().AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt::no));
        EXPECT_EQ(scene.queue.pendingCount(), 0U);
        for (int i = 0; i < 2; ++i) {
            EXPECT_FALSE(scene.accessibility().AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt::yes));
        }
        scene.queue.advance(milliseconds(1000));
        EXPECT_EQ(scene.explanations, 0) << "not yet";
        if (row.comesUp) {
            scene.windowManager.start();
            scene.takeTurn();
        }
        scene.queue.advance(milliseconds(5000));
        EXPECT_EQ(scene.explanations, row.explanations);
    }
}

} // namespace
} // namespace brisk::desktop
