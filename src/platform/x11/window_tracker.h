#pragma once

#include "platform/x11/atoms.h"
#include "platform/x11/connection.h"
#include "platform/x11/window.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace brisk::x11 {

/// The windows of the window manager's clients, followed by events: which exist, which is active and was before, which
/// lie on top. Questions are answered from what was learnt, so that a command does not pay for each window of the
/// desktop; `update` and `synchronize` say when the server is asked. Expects the root window to be followed.
class WindowTracker {
public:
    WindowTracker(Connection& connection, const Atoms& atoms);
    WindowTracker(const WindowTracker&) = delete;
    WindowTracker& operator=(const WindowTracker&) = delete;
    ~WindowTracker() = default;

    /// Asks the server for what events have said is different now; without such events, for nothing.
    void update();
    /// Makes everything known that the server has sent by now. The server tells of a new active window before the input
    /// that follows, so that nothing need be asked where nothing has changed.
    void synchronize();

    /// The window that the user works in: null when there is none, or it is the desktop, a panel or a pop-up.
    WindowRef activeWindow() const;
    /// Whether the window manager names an active window at all, be it one of those that do not count.
    bool hasActiveWindow() const { return activeID_ != XCB_WINDOW_NONE; }
    /// Whether the window manager lists that window among its clients.
    bool isClient(xcb_window_t id) const;
    /// The window of that id, followed from now on; null when there is none.
    WindowRef find(xcb_window_t id);

    /// The process's windows that a user can work in, topmost first. A round trip when the order has changed.
    std::vector<WindowRef> windowsOf(const ProcessIdentity& process);
    /// Of these windows the active one, else the one that was active last, else the topmost; hidden ones only where
    /// there are no others. Null when there are none.
    WindowRef focusedWindowOf(const ProcessIdentity& process);
    /// The process as the owner of a window followed here; none when that id owns none.
    std::optional<ProcessIdentity> ownerWithID(ProcessIdentifier id) const;

    /// What clients that are shown keep free at the screen's edges.
    std::vector<Strut> struts() const;
    /// Another number whenever `struts` may give something else.
    std::uint64_t strutGeneration() const { return strutGeneration_; }

private:
    void handle(const xcb_generic_event_t& event);
    void handleRootProperty(xcb_atom_t property);
    void handleDestruction(xcb_window_t id);
    void setMapped(xcb_window_t id, bool isMapped);
    void takeClientList(const std::vector<xcb_window_t>& ids);
    void takeActiveWindow(xcb_window_t id);
    void describeStaleWindows();

    Connection& connection_;
    const Atoms& atoms_;
    std::unordered_map<xcb_window_t, std::shared_ptr<Window>> windows_;
    /// The window manager's clients, bottom to top as last asked.
    std::vector<xcb_window_t> stacking_;
    xcb_window_t activeID_ = XCB_WINDOW_NONE;
    std::uint64_t activations_ = 0;
    std::uint64_t strutGeneration_ = 0;
    bool isClientListStale_ = true;
    bool isActiveWindowStale_ = true;
    bool isStackingStale_ = true;
    bool areWindowsStale_ = false;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
