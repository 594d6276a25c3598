#pragma once

#include "desktop/support/desktop_connection.h"
#include "desktop/support/process.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace brisk::desktop {

enum class WindowKind { normal, dialog, utility, dock, desktop };

/// A panel's claim on one screen edge, as `_NET_WM_STRUT_PARTIAL` has it.
struct Strut {
    enum class Edge { left, right, top, bottom };
    Edge edge = Edge::top;
    /// Measured from the edge of the whole screen, not of a monitor.
    int thickness = 0;
    /// First and last pixel along the edge.
    int start = 0;
    int end = 0;
};

/// A window as an application might make it.
struct WindowDescription {
    std::string title = "Test window";
    std::string className = "BriskTest";
    /// The client area asked for; a window manager may decide otherwise.
    PixelRect client{.x = 200, .y = 150, .width = 400, .height = 300};
    std::optional<PixelSize> minimumSize;
    std::optional<PixelSize> maximumSize;
    std::optional<PixelSize> sizeIncrements;
    std::optional<PixelSize> baseSize;
    /// Draws its own frame inside a shadow of this width, as GTK's header bar windows do.
    std::optional<PixelExtents> clientShadow;
    WindowKind kind = WindowKind::normal;
    std::optional<Strut> strut;
    /// The process id it claims instead of its own.
    std::optional<std::uint32_t> claimedProcessID;
    bool isMaximized = false;
    bool isFullscreen = false;
    /// Not for the window manager, as menus and tooltips.
    bool overridesRedirect = false;
    /// What the window lets be done with itself (`_MOTIF_WM_HINTS` function bits).
    std::optional<std::uint32_t> motifFunctions;
    static constexpr std::uint32_t motifClose = 32;
    /// Colour of its area, 0xRRGGBB.
    std::uint32_t background = 0xF4F4F4;
};

/// An application on a connection of its own, inside the test's process. Messages from window manager and server are
/// taken note of, and answered, whenever the test asks for something; one that is not asked is a hung application.
class TestClient {
public:
    explicit TestClient(const std::string& display);

    DesktopConnection& connection() { return connection_; }

    /// Creates the window and asks for it to be shown; `DesktopConnection::isManaged` tells when it is.
    xcb_window_t open(const WindowDescription& description = {});
    /// Takes the window away as a closing application does.
    void close(xcb_window_t window);
    /// Whether the window was ever one of this client's.
    bool has(xcb_window_t window) const { return records_.contains(window); }

    struct Configuration {
        /// The client area; its position is in root coordinates only when synthetic.
        PixelRect rect;
        /// Sent by the window manager, not by the server.
        bool isSynthetic = false;
    };
    struct Record {
        /// Every ConfigureNotify, in order.
        std::vector<Configuration> configurations;
        /// Key codes pressed while the window had the focus.
        std::vector<std::uint8_t> pressedKeys;
        int buttonPresses = 0;
        bool isCloseRequested = false;
    };
    /// What happened to the window up to now.
    const Record& record(xcb_window_t window);
    void forgetRecords();

    /// Takes note of what has arrived and answers it. False once the server is gone.
    bool dispatchEvents();

private:
    void dispatch(const xcb_generic_event_t& event);

    DesktopConnection connection_;
    std::map<xcb_window_t, Record> records_;
};

/// Where the window is once nobody has moved it for that long: there is no event that says that nothing more comes.
std::optional<PixelRect> frameAtRest(DesktopConnection& desktop, TestClient& client, xcb_window_t window,
                                     std::chrono::milliseconds quiet);

/// A `TestClient` in a process of its own, so that it can hang or die; its output has a window id a line.
Process startTestClient(const Environment& environment, std::span<const WindowDescription> windows);
/// The windows of a process that `startTestClient` started; waits for them to be created.
std::vector<xcb_window_t> testClientWindows(Process& process, std::size_t count);

/// What `startTestClient` told the process.
std::vector<WindowDescription> windowsFromArguments(std::span<char* const> arguments);

} // namespace brisk::desktop
