#include "desktop/support/input.h"
#include "desktop/support/test_window.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"
#include "desktop/support/window_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/randr.h>

#include <array>
#include <string>
#include <vector>

namespace brisk::desktop {
namespace {

using testing::ElementsAre;

class VirtualDesktop : public testing::TestWithParam<WindowManager::Kind> {};

TEST_P(VirtualDesktop, ClientsAreManagedMovedAndTypedInto) {
    VirtualServer server;
    WindowManager windowManager(server, GetParam());
    DesktopConnection desktop(server.display());
    TestClient client(server.display());
    struct Row {
        const char* why;
        WindowDescription window;
    };
    const std::array rows{
        Row{"decorated by the window manager", {}},
        Row{"drawing its own shadow", {.clientShadow = PixelExtents{.left = 26, .right = 26, .top = 23, .bottom = 29}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.why);
        const xcb_window_t window = client.open(row.window);
        ASSERT_TRUE(waitUntil([&] { return desktop.isManaged(window) && desktop.activeWindow() == window; }));
        const PixelExtents around = desktop.decorations(window);
        EXPECT_EQ(around.top > 0, !row.window.clientShadow);

        const PixelRect target{.x = 301, .y = 203, .width = 640, .height = 480};
        desktop.requestFrame(window, target);
        EXPECT_TRUE(waitUntil([&] { return desktop.visibleFrame(window) == target; })) << *desktop.visibleFrame(window);

        // Combinations of the product's defaults reach the client while nobody grabs them.
        Keyboard keyboard(desktop);
        for (const Key key : {Key::left, Key::up, Key::c}) {
            keyboard.press(key, {Key::leftControl, Key::leftAlt});
            EXPECT_TRUE(waitUntil([&] {
                const auto& keys = client.record(window).pressedKeys;
                return !keys.empty() && keys.back() == static_cast<std::uint8_t>(key);
            })) << static_cast<int>(key);
        }
    }
}

TEST_P(VirtualDesktop, SurvivesItsWindowManager) {
    VirtualServer server;
    WindowManager windowManager(server, GetParam());
    DesktopConnection desktop(server.display());
    TestClient client(server.display());
    const xcb_window_t window = client.open();
    ASSERT_TRUE(waitUntil([&] { return desktop.isManaged(window); }));

    windowManager.kill();
    windowManager.start();
    EXPECT_TRUE(waitUntil([&] { return desktop.isManaged(window); }));
}

INSTANTIATE_TEST_SUITE_P(On, VirtualDesktop, testing::ValuesIn(WindowManager::kindsToTest()),
                         [](const auto& kind) { return std::string(WindowManager::programOf(kind.param)); });

TEST(VirtualServer, TellsClientsOfItsMonitors) {
    VirtualServer server({.width = 1600, .height = 600});
    DesktopConnection desktop(server.display());
    const auto monitors = [&desktop] {
        std::vector<PixelRect> areas;
        const Reply<xcb_randr_get_monitors_reply_t> reply{xcb_randr_get_monitors_reply(
            desktop.xcb(), xcb_randr_get_monitors(desktop.xcb(), desktop.root(), 1), nullptr)};
        for (auto i = xcb_randr_get_monitors_monitors_iterator(reply.get()); i.rem > 0;
             xcb_randr_monitor_info_next(&i)) {
            areas.push_back({.x = i.data->x, .y = i.data->y, .width = i.data->width, .height = i.data->height});
        }
        return areas;
    };
    const PixelRect left{.x = 0, .y = 0, .width = 800, .height = 600};
    const PixelRect right{.x = 800, .y = 100, .width = 800, .height = 500};
    server.setMonitors({{.area = left, .isPrimary = true}, {.area = right}});
    EXPECT_THAT(monitors(), testing::UnorderedElementsAre(left, right));
    server.setMonitors({{.area = right, .isPrimary = true}});
    EXPECT_THAT(monitors(), ElementsAre(right));
}

TEST(TestClient, InItsOwnProcessHangsDiesAndIsWhatWasDescribed) {
    VirtualServer server;
    WindowManager windowManager(server, WindowManager::Kind::openbox);
    DesktopConnection desktop(server.display());
    const std::vector<WindowDescription> descriptions{
        {.title = "One", .minimumSize = PixelSize{.width = 300, .height = 200}},
        {.title = "Panel",
         .client = {.x = 0, .y = 0, .width = 1440, .height = 30},
         .kind = WindowKind::dock,
         .strut = Strut{.edge = Strut::Edge::top, .thickness = 30, .start = 0, .end = 1439},
         .claimedProcessID = 1}};
    Process process = startTestClient(server.environment(), descriptions);
    const auto windows = testClientWindows(process, 2);
    ASSERT_TRUE(waitUntil([&] { return desktop.isManaged(windows[0]) && desktop.isManaged(windows[1]); }));
    EXPECT_THAT(desktop.cardinals(windows[0], "_NET_WM_PID"), ElementsAre(process.id()));
    EXPECT_THAT(desktop.cardinals(windows[1], "_NET_WM_PID"), ElementsAre(1));
    // The window manager heeds what the description said.
    ASSERT_TRUE(waitUntil([&] {
        const auto workArea = desktop.cardinals(desktop.root(), "_NET_WORKAREA");
        return workArea.size() >= 4 && workArea[1] == 30;
    }));
    desktop.requestFrame(windows[0], {.x = 100, .y = 100, .width = 50, .height = 50});
    EXPECT_TRUE(waitUntil([&] {
        const auto rect = desktop.clientRect(windows[0]);
        return rect && rect->width == 300 && rect->height == 200;
    }));

    process.pause();
    desktop.sendToWindowManager(windows[0], "_NET_CLOSE_WINDOW", {0, 2, 0, 0, 0});
    desktop.synchronize();
    EXPECT_TRUE(process.isRunning());
    process.resume();
    EXPECT_TRUE(waitUntil([&] { return !process.isRunning(); })) << "a close request ends the program";
    EXPECT_EQ(process.waitStatus(), 0);
}

} // namespace
} // namespace brisk::desktop
