#include "desktop/window_access_scene.h"
#include "windows/window_manager.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace brisk::desktop {
namespace {

constexpr PixelRect screen{.width = 1440, .height = 900};

/// A property in whatever type and format, its value a list of numbers of that format.
struct Claim {
    const char* why;
    const char* property;
    const char* type;
    std::uint8_t format;
    std::vector<std::uint32_t> numbers;
};

void claim(DesktopConnection& desktop, xcb_window_t window, const Claim& claim) {
    std::string bytes;
    for (const std::uint32_t number : claim.numbers) {
        bytes.append(reinterpret_cast<const char*>(&number), claim.format / 8U); // the low bytes, on little-endian
    }
    xcb_change_property(desktop.xcb(), XCB_PROP_MODE_REPLACE, window, desktop.atom(claim.property),
                        desktop.atom(claim.type), claim.format, static_cast<std::uint32_t>(claim.numbers.size()),
                        bytes.data());
    desktop.synchronize();
}

bool isSeen(const PixelRect& rect) {
    return rect.width > 0 && rect.height > 0 && rect.x < screen.width && rect.y < screen.height &&
           rect.x + rect.width > 0 && rect.y + rect.height > 0;
}

TEST(HostileClient, IsPlacedWhereItCanBeSeenWhateverItSaysOfItself) {
    WindowAccessScene scene;
    const xcb_window_t window = scene.openInFront();
    brisk::WindowManager manager(scene.accessibility());
    constexpr std::uint32_t huge = 0xFFFFFFFF;
    constexpr std::uint32_t wrapping = 0x80000000;
    constexpr std::uint32_t minimumAndIncrement = 16 | 64;
    for (const Claim& row : {
             Claim{
                 "a decoration wider than the display", "_NET_FRAME_EXTENTS", "CARDINAL", 32, {1000, 1000, 1000, 1000}},
             Claim{"a decoration that adds up to nothing",
                   "_NET_FRAME_EXTENTS",
                   "CARDINAL",
                   32,
                   {wrapping, wrapping, wrapping, wrapping}},
             Claim{"a decoration in bytes", "_NET_FRAME_EXTENTS", "CARDINAL", 8, {1, 1, 24, 5}},
             Claim{"a shadow that leaves two pixels", "_GTK_FRAME_EXTENTS", "CARDINAL", 32, {199, 199, 149, 149}},
             Claim{"a shadow in half words", "_GTK_FRAME_EXTENTS", "CARDINAL", 16, {20, 20, 20, 20}},
             Claim{"a strut whose depths wrap", "_NET_WM_STRUT", "CARDINAL", 32, {huge, wrapping, huge, wrapping}},
             Claim{"a strut whose ranges wrap",
                   "_NET_WM_STRUT_PARTIAL",
                   "CARDINAL",
                   32,
                   {1, 1, 1, 1, wrapping, huge, huge, wrapping, huge, 0, 1, wrapping}},
             Claim{"a state of other people's atoms", "_NET_WM_STATE", "ATOM", 32, std::vector(5000, huge)},
             Claim{"actions that are text", "_NET_WM_ALLOWED_ACTIONS", "UTF8_STRING", 8, std::vector(5000, huge)},
             Claim{"a title of a megabyte", "_NET_WM_NAME", "UTF8_STRING", 8, std::vector(1 << 20U, huge)},
             Claim{
                 "a size beyond the protocol's, in steps of such",
                 "WM_NORMAL_HINTS",
                 "WM_SIZE_HINTS",
                 32,
                 {minimumAndIncrement, 0, 0, 0, 0, wrapping, wrapping, 0, 0, wrapping, wrapping, 0, 0, 0, 0, 0, 0, 0}},
         }) {
        SCOPED_TRACE(row.why);
        claim(scene.desktop, window, row);
        scene.takeTurn();
        const auto application = scene.brisk->workspace().frontmostApplication();
        ASSERT_TRUE(application);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(manager.applyLayout(WindowLayout::leftHalf, *application, 10), WindowActionResult::applied);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
        // What waits for the window believes what it says.
        xcb_delete_property(scene.desktop.xcb(), window, scene.desktop.atom(row.property));
        scene.desktop.synchronize();
        scene.waitForRest(window);
        const auto rect = scene.desktop.clientRect(window);
        ASSERT_TRUE(rect);
        EXPECT_TRUE(isSeen(*rect)) << *rect;
    }

    // The canary: a window that says nothing strange goes just where it is told to.
    const xcb_window_t honest = scene.openInFront();
    const auto application = scene.brisk->workspace().frontmostApplication();
    ASSERT_TRUE(application);
    EXPECT_EQ(manager.applyLayout(WindowLayout::maximize, *application, 10), WindowActionResult::applied);
    scene.waitForRest(honest);
    EXPECT_EQ(scene.desktop.visibleFrame(honest), (PixelRect{.x = 10, .y = 10, .width = 1420, .height = 880}));
}

TEST(HostileClient, ANameWithoutEndIsCutShort) {
    WindowAccessScene scene;
    scene.openInFront({.className = std::string(1 << 20U, '\xC3')});
    const auto application = scene.brisk->workspace().frontmostApplication();
    ASSERT_TRUE(application);
    EXPECT_LE(application->localizedName().value_or("").size(), 1024U);
}

} // namespace
} // namespace brisk::desktop
