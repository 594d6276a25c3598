#include "desktop/support/virtual_server.h"

#include "desktop/support/wait.h"

#include <sys/uio.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <array>
#include <stdexcept>

namespace brisk::desktop {
namespace {

Process startServer(const TemporaryDirectory& home, PixelSize screen) {
    Environment environment = isolatedEnvironment(home, "");
    environment.erase("DISPLAY");
    return Process({"Xvfb", "-displayfd", "1", "-screen", "0",
                    std::to_string(screen.width) + "x" + std::to_string(screen.height) + "x24", "-nolisten", "tcp",
                    // Without it the server starts over, properties and all, whenever its last client goes.
                    "-noreset", "+extension", "RANDR"},
                   environment,
                   // Killed outright it would leave its lock file behind.
                   SIGTERM);
}

/// RandR's SetMonitor, put together by hand: xcb_randr_set_monitor of libxcb 1.15 states one part too many and sends
/// what lies beyond them on the stack.
Reply<xcb_generic_error_t> setMonitor(DesktopConnection& connection, xcb_randr_monitor_info_t info,
                                      const xcb_randr_output_t* output) {
    xcb_protocol_request_t request{};
    request.count = 3;
    request.ext = &xcb_randr_id;
    request.opcode = XCB_RANDR_SET_MONITOR;
    request.isvoid = 1;
    xcb_randr_set_monitor_request_t head{};
    head.window = connection.root();
    xcb_randr_output_t owned = output == nullptr ? 0 : *output;
    // xcb uses the two parts before the first for itself.
    std::array<iovec, 5> parts{iovec{}, iovec{}, iovec{&head, sizeof head}, iovec{&info, sizeof info},
                               iovec{&owned, output == nullptr ? 0 : sizeof owned}};
    xcb_void_cookie_t cookie{};
    cookie.sequence = xcb_send_request(connection.xcb(), XCB_REQUEST_CHECKED, &parts[2], &request);
    return Reply<xcb_generic_error_t>{xcb_request_check(connection.xcb(), cookie)};
}

} // namespace

VirtualServer::VirtualServer(PixelSize screen) : process_(startServer(home_, screen)) {
    std::string number;
    const bool isUp = waitUntil([&] {
        number = process_.output();
        return number.ends_with('\n') || !process_.isRunning();
    });
    if (!isUp || !process_.isRunning()) {
        throw std::runtime_error("Xvfb did not start: " + process_.errors());
    }
    number.pop_back();
    display_ = ":" + number;
}

void VirtualServer::setMonitors(const std::vector<VirtualMonitor>& monitors) {
    DesktopConnection connection(display_);
    // One monitor must own the screen's output, else the server goes on showing its automatic one beside ours.
    const Reply<xcb_randr_get_screen_resources_current_reply_t> resources{xcb_randr_get_screen_resources_current_reply(
        connection.xcb(), xcb_randr_get_screen_resources_current(connection.xcb(), connection.root()), nullptr)};
    if (!resources || resources->num_outputs == 0) {
        throw std::runtime_error("the virtual screen has no output");
    }
    const xcb_randr_output_t output = *xcb_randr_get_screen_resources_current_outputs(resources.get());

    for (const std::string& name : monitorNames_) {
        xcb_randr_delete_monitor(connection.xcb(), connection.root(), connection.atom(name));
    }
    monitorNames_.clear();
    for (std::size_t i = 0; i < monitors.size(); ++i) {
        const VirtualMonitor& monitor = monitors[i];
        monitorNames_.push_back("virtual-" + std::to_string(i));
        xcb_randr_monitor_info_t info{};
        info.name = connection.atom(monitorNames_.back());
        info.primary = monitor.isPrimary ? 1 : 0;
        info.nOutput = i == 0 ? 1 : 0;
        info.x = static_cast<std::int16_t>(monitor.area.x);
        info.y = static_cast<std::int16_t>(monitor.area.y);
        info.width = static_cast<std::uint16_t>(monitor.area.width);
        info.height = static_cast<std::uint16_t>(monitor.area.height);
        info.width_in_millimeters = info.width / 4U;
        info.height_in_millimeters = info.height / 4U;
        const Reply<xcb_generic_error_t> error = setMonitor(connection, info, info.nOutput != 0 ? &output : nullptr);
        if (error) {
            throw std::runtime_error("monitor refused, error " + std::to_string(error->error_code));
        }
    }
    connection.synchronize();
}

} // namespace brisk::desktop
