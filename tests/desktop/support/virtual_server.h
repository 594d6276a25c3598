#pragma once

#include "desktop/support/desktop_connection.h"
#include "desktop/support/process.h"

#include <string>
#include <vector>

namespace brisk::desktop {

/// A part of the virtual screen that clients take for a monitor.
struct VirtualMonitor {
    PixelRect area;
    bool isPrimary = false;
};

/// An X server without hardware, on a free display number, with keyboard and pointer that only `Keyboard` and `Pointer`
/// move. It dies with this object, and its clients with it.
class VirtualServer {
public:
    /// Throws `std::runtime_error` when the server does not come up.
    explicit VirtualServer(PixelSize screen = {.width = 1440, .height = 900});

    const std::string& display() const { return display_; }
    /// What a client of this server runs with: this display, and a home of its own that all clients of it share.
    Environment environment() const { return isolatedEnvironment(home_, display_); }
    const TemporaryDirectory& home() const { return home_; }
    Process& process() { return process_; }

    /// Divides the screen into these monitors instead of those before. Window managers hear of it by themselves.
    void setMonitors(const std::vector<VirtualMonitor>& monitors);

private:
    TemporaryDirectory home_;
    Process process_;
    std::string display_;
    std::vector<std::string> monitorNames_;
};

} // namespace brisk::desktop
