#pragma once

#include "desktop/support/virtual_server.h"

#include <memory>
#include <string>
#include <vector>

namespace brisk::desktop {

/// A window manager on a virtual server, with no shortcuts of its own that Brisk's could collide with.
class WindowManager {
public:
    enum class Kind { openbox, xfwm4, metacity, kwin };
    static const char* programOf(Kind kind);
    /// Those that the tests need, and kwin, which brings half a desktop with it, where it is installed.
    static std::vector<Kind> kindsToTest();

    /// Starts it and waits until it manages windows. Throws `std::runtime_error` when it does not.
    WindowManager(VirtualServer& server, Kind kind);
    /// openbox with shortcuts after all: its configuration's <keybind> elements.
    WindowManager(VirtualServer& server, std::string openboxKeyBindings);

    Kind kind() const { return kind_; }
    Process& process() { return *process_; }
    /// Ends it as a crash would; windows stay, unmanaged.
    void kill();
    /// Starts it again, and waits until it manages windows.
    void start();
    /// There again after whatever was done to it.
    void recover();
    /// Another copy asks it to go, takes its place and manages windows.
    void replace();

private:
    void launch(const std::vector<std::string>& options);
    void awaitReadiness() const;

    VirtualServer& server_;
    Kind kind_;
    std::string openboxKeyBindings_;
    std::unique_ptr<Process> process_;
};

} // namespace brisk::desktop
