#include "platform/x11/pointer_look.h"

#include "desktop/support/input.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/wait.h"

#include <gtest/gtest.h>
#include <xcb/xinput.h>

#include <array>
#include <chrono>

namespace brisk::desktop {
namespace {

using std::chrono::milliseconds;

/// Two more master devices with a slave each, as another mouse and keyboard would make.
void addInputDevices(DesktopConnection& desktop) {
    struct {
        xcb_input_add_master_t head{
            .type = XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER, .len = 3, .name_len = 4, .send_core = 0, .enable = 1};
        std::array<char, 4> name{'m', 'o', 'r', 'e'};
    } change;
    const Reply<xcb_input_xi_query_version_reply_t> version{
        xcb_input_xi_query_version_reply(desktop.xcb(), xcb_input_xi_query_version(desktop.xcb(), 2, 2), nullptr)};
    const Reply<xcb_generic_error_t> error{xcb_request_check(
        desktop.xcb(), xcb_input_xi_change_hierarchy_checked(
                           desktop.xcb(), 1, reinterpret_cast<const xcb_input_hierarchy_change_t*>(&change)))};
    ASSERT_FALSE(error) << int{error->error_code};
}

TEST(PointerLook, ShowsWhereThePointerIsThen) {
    const VirtualServer server;
    DesktopConnection desktop(server.display());
    // The server has a counter for each device, with names of different lengths.
    addInputDevices(desktop);
    const auto look = x11::PointerLook::open(server.display().c_str());
    ASSERT_NE(look, nullptr);
    EXPECT_FALSE(look->take()) << "nothing was asked";

    Pointer pointer(desktop);
    pointer.moveTo(10, 20);
    const auto asked = std::chrono::steady_clock::now();
    look->ask(milliseconds(100));
    pointer.moveTo(300, 200);
    desktop.synchronize();
    // The one that is to come will do.
    look->ask(milliseconds(10));
    std::optional<x11::PointerReading> reading;
    ASSERT_TRUE(waitUntil([&] { return (reading = look->take()).has_value(); }));
    EXPECT_GE(std::chrono::steady_clock::now() - asked, milliseconds(99));
    EXPECT_EQ(reading->rootX, 300);
    EXPECT_EQ(reading->rootY, 200);
    EXPECT_FALSE(look->take()) << "once";

    look->ask(milliseconds(1));
    look->forget();
    EXPECT_FALSE(waitUntil([&] { return look->take().has_value(); }, milliseconds(50)));
    look->ask(milliseconds(1));
    EXPECT_TRUE(waitUntil([&] { return look->take().has_value(); }));
}

} // namespace
} // namespace brisk::desktop
