#include "desktop/window_access_scene.h"

#include <gtest/gtest.h>

#include <vector>

namespace brisk::desktop {
namespace {

/// Two monitors of different heights side by side: the primary one right, lower by 100 pixels.
constexpr PixelRect leftMonitor{.x = 0, .y = 0, .width = 800, .height = 900};
constexpr PixelRect rightMonitor{.x = 800, .y = 100, .width = 1000, .height = 700};

struct TwoMonitors : WindowAccessScene {
    TwoMonitors() : WindowAccessScene(WindowManager::Kind::openbox, {.width = 1800, .height = 900}) {
        server.setMonitors({{.area = leftMonitor}, {.area = rightMonitor, .isPrimary = true}});
        synchronize();
    }
    void synchronize() {
        desktop.synchronize();
        takeTurn();
    }
    std::vector<ScreenInfo> screensWith(const Strut& strut) {
        const xcb_window_t panel = client.open({.client = {0, 0, 50, 20}, .kind = WindowKind::dock, .strut = strut});
        EXPECT_TRUE(waitUntil([&] { return desktop.isManaged(panel); }));
        synchronize();
        auto screens = accessibility().screens();
        client.close(panel);
        EXPECT_TRUE(waitUntil([&] { return !desktop.isManaged(panel); }));
        synchronize();
        return screens;
    }
};

// In AppKit coordinates: from the bottom left corner of the primary monitor, which is at (800, 800).
constexpr CGRect primaryFrame{{0, 0}, {1000, 700}};
constexpr CGRect secondaryFrame{{-800, -100}, {800, 900}};

TEST(Displays, LeaveOutWhatPanelsKeepForThemselves) {
    TwoMonitors scene;
    struct Row {
        const char* why;
        Strut strut;
        CGRect primary;
        CGRect secondary;
    };
    using Edge = Strut::Edge;
    for (const Row& row : {
             Row{"a bar on top of the left one", {Edge::top, 30, 0, 799}, primaryFrame, {{-800, -100}, {800, 870}}},
             Row{"a bar on top of the right one, which begins 100 pixels below the screen's edge",
                 {Edge::top, 140, 800, 1799},
                 {{0, 0}, {1000, 660}},
                 secondaryFrame},
             Row{"a bar at the bottom of the right one, which ends 100 pixels above",
                 {Edge::bottom, 125, 800, 1799},
                 {{0, 25}, {1000, 675}},
                 secondaryFrame},
             Row{"a bar at the left of the right one: it lies beyond the left one, not on all of it",
                 {Edge::left, 860, 100, 799},
                 {{60, 0}, {940, 700}},
                 secondaryFrame},
             Row{"a bar across both ends of the screen",
                 {Edge::bottom, 40, 0, 1799},
                 primaryFrame,
                 {{-800, -60}, {800, 860}}},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(scene.screensWith(row.strut),
                  (std::vector<ScreenInfo>{{primaryFrame, row.primary}, {secondaryFrame, row.secondary}}));
    }
    EXPECT_EQ(scene.accessibility().screens(),
              (std::vector<ScreenInfo>{{primaryFrame, primaryFrame}, {secondaryFrame, secondaryFrame}}))
        << "a panel's space is free again once it is gone";
}

} // namespace
} // namespace brisk::desktop
