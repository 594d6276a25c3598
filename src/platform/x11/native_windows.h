#pragma once

#include "platform/native_windows.h"
#include "platform/x11/connection.h"
#include "platform/x11/displays.h"

#include <cstdint>

namespace brisk::x11 {

/// Override-redirect windows of this process, whichever connection made them. Frame and shape are set when the calls
/// return, so that what the toolkit asks for next on its own connection, such as showing the window, comes after them.
class NativeWindows final : public brisk::NativeWindows {
public:
    NativeWindows(Connection& connection, Displays& displays);

    void setFrame(NativeWindowID window, const CGRect& frame) override;
    /// Asks at once when the window's frame was set since the last time. Otherwise `askAgainForFront` keeps it there:
    /// the drag's panel is ordered to the front with each report, and that is not to be a message of its own.
    void orderFrontRegardless(NativeWindowID window) override;
    void setShape(NativeWindowID window, const std::optional<std::vector<CGRect>>& shape) override;
    /// A compositing manager owns the selection _NET_WM_CM_Sn of its screen (Extended Window Manager Hints).
    bool isCompositingActive() override { return isCompositingActive_; }
    void setCompositingChangedHandler(std::function<void()> handler) override;

    /// Asks for the front for the window that was put there last; sent with the next request that is flushed.
    void askAgainForFront();

private:
    void handle(const xcb_generic_event_t& event);
    void watchCompositor();
    /// Waits until the server has carried out the request; its failure means that the window is gone.
    void finish(xcb_void_cookie_t request);

    Connection& connection_;
    Displays& displays_;
    xcb_atom_t compositorSelection_ = XCB_ATOM_NONE;
    /// 0 without the extension.
    std::uint8_t selectionNotify_ = 0;
    bool isCompositingActive_ = false;
    /// The window put to the front last, unless its frame was set since.
    std::optional<NativeWindowID> front_;
    std::function<void()> compositingChanged_;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
