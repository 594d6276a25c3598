#pragma once

#include "platform/x11/atoms.h"
#include "platform/x11/connection.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace brisk::x11 {

/// The window manager, whichever runs now, as far as it speaks the Extended Window Manager Hints: whether one is there,
/// and messages to it. Expects the root window to be followed.
class WindowManagerPeer {
public:
    /// A point in the order of messages sent to the window manager.
    using Checkpoint = std::uint64_t;

    WindowManagerPeer(Connection& connection, const Atoms& atoms);
    WindowManagerPeer(const WindowManagerPeer&) = delete;
    WindowManagerPeer& operator=(const WindowManagerPeer&) = delete;
    ~WindowManagerPeer();

    /// Whether a window manager is there, as of the events dispatched; asks the server only after those said that it
    /// came or went.
    bool isPresent();
    /// Whether it says that it places windows on request.
    bool placesWindows();

    /// Asks something of it about a window; it is free to refuse, and nothing tells.
    void send(xcb_window_t window, xcb_atom_t message, const std::array<std::uint32_t, 5>& data);

    /// Marks the point reached by what was sent so far. A server round trip proves nothing about what the window
    /// manager has done, so it is asked a question whose answer comes after: the frame extents of an unmapped window of
    /// ours. Not every window manager answers: only wait for it with a deadline.
    Checkpoint requestCheckpoint();
    bool hasReached(Checkpoint checkpoint) const { return answers_ >= checkpoint; }

private:
    void handle(const xcb_generic_event_t& event);
    void update();

    Connection& connection_;
    const Atoms& atoms_;
    /// Never mapped; the subject of checkpoint questions.
    xcb_window_t ownWindow_;
    bool isStale_ = true;
    /// The window by which it shows that it lives, as the root window names it.
    xcb_window_t checkWindow_ = XCB_WINDOW_NONE;
    bool isPresent_ = false;
    bool placesWindows_ = false;
    Checkpoint questions_ = 0;
    Checkpoint answers_ = 0;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
