#pragma once

#include "desktop/support/pixel_rect.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisk::desktop {

struct FreeReply {
    void operator()(void* p) const { std::free(p); }
};
template <class T>
using Reply = std::unique_ptr<T, FreeReply>;

/// A test's own view of an X display: what windows there are, where they are, and what a pager would ask of the window
/// manager. It shares no code with the product, so that the two check each other.
class DesktopConnection {
public:
    /// Throws `std::runtime_error` when there is no such display.
    explicit DesktopConnection(const std::string& display);
    DesktopConnection(const DesktopConnection&) = delete;
    DesktopConnection& operator=(const DesktopConnection&) = delete;
    ~DesktopConnection();

    xcb_connection_t* xcb() const { return connection_; }
    const xcb_screen_t& screen() const { return *screen_; }
    xcb_window_t root() const { return screen_->root; }
    xcb_atom_t atom(const std::string& name);

    /// A property's 32-bit items; empty when it is not there or the window is gone.
    std::vector<std::uint32_t> cardinals(xcb_window_t window, const std::string& property);
    void setCardinals(xcb_window_t window, const std::string& property, xcb_atom_t type,
                      const std::vector<std::uint32_t>& items);
    /// A client message to the root window, as pagers send them to the window manager.
    void sendToWindowManager(xcb_window_t window, const std::string& type, std::array<std::uint32_t, 5> data);
    /// Returns once the server has carried out every request made so far.
    void synchronize();

    /// The client area in root coordinates; none once the window is gone.
    std::optional<PixelRect> clientRect(xcb_window_t window);
    /// What the window manager draws around the client (`_NET_FRAME_EXTENTS`).
    PixelExtents decorations(xcb_window_t window);
    /// What the user sees of a window in root coordinates: client and decorations, without a shadow drawn by the
    /// client.
    std::optional<PixelRect> visibleFrame(xcb_window_t window);
    bool isViewable(xcb_window_t window);
    bool hasState(xcb_window_t window, const std::string& stateAtom);

    xcb_window_t activeWindow();
    /// Managed windows, oldest first.
    std::vector<xcb_window_t> clients();
    /// Whether the window manager has taken the window into its care and shows it.
    bool isManaged(xcb_window_t window);

    /// Of all windows on the root window, what lies above the others.
    xcb_window_t topmostWindow();
    /// The windows of clients with that instance name (`WM_CLASS`) that can be seen, managed or not, those docked in a
    /// tray included; not the tiny ones that toolkits make for themselves.
    std::vector<xcb_window_t> windowsOf(const std::string& instanceName);
    /// Empty when it has none or is gone.
    std::string title(xcb_window_t window);
    /// Whether a compositor is there.
    bool isCompositing();

    /// Asks the window manager, as a pager, to give a window this visible frame. It may take its time.
    void requestFrame(xcb_window_t window, const PixelRect& visibleFrame);
    void requestActivation(xcb_window_t window);
    void requestClose(xcb_window_t window);

private:
    void addWindowsOf(const std::string& instanceName, xcb_window_t parent, std::vector<xcb_window_t>& found);

    xcb_connection_t* connection_;
    const xcb_screen_t* screen_ = nullptr;
    std::map<std::string, xcb_atom_t> atoms_;
};

} // namespace brisk::desktop
