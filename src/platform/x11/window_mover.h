#pragma once

#include "geometry/rectangle.h"
#include "platform/accessibility_platform.h"
#include "platform/x11/atoms.h"
#include "platform/x11/connection.h"
#include "platform/x11/frame_reading.h"
#include "platform/x11/window.h"
#include "platform/x11/window_manager_peer.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <variant>

namespace brisk::x11 {

/// Reads and writes window frames, in coordinates of the root window (y down).
///
/// A position and a size written one after the other go out as one message, so that no intermediate frame is ever seen:
/// a position is held until the size comes, the window is read, or the turn of the main loop ends. A write only asks,
/// so that the window is on its way at once; the next read of that window waits, for a bounded time, until it has
/// arrived.
class WindowMover {
public:
    WindowMover(Connection& connection, const Atoms& atoms, WindowManagerPeer& windowManager);
    WindowMover(const WindowMover&) = delete;
    WindowMover& operator=(const WindowMover&) = delete;
    ~WindowMover() = default;

    /// Sends the questions of a read that is to come in this turn, so that they share the round trip of the next reply.
    /// Does nothing without a window, or where a read has to wait for a movement.
    void askAhead(const WindowRef& window);
    /// Tells that a drag has ended before the answer to what was asked ahead. The window manager may have given the
    /// window another size by then, as snapping to an edge does: that size is none of the drag's, and the frame as it
    /// was read before is told instead.
    void dragHasEnded();
    /// Whether the event tells that the window read last has another size than it had then.
    bool isResize(const xcb_generic_event_t& event) const;
    /// The window's visible outer frame; none when it is gone.
    std::optional<PixelRect> read(const WindowRef& window);

    /// Asks for another top left corner or size of the visible outer frame; the edges are rounded to whole pixels, so
    /// that neighbours keep sharing them. A maximized or fullscreen window is made an ordinary one first.
    AXError setPosition(const WindowRef& window, CGPoint position);
    AXError setSize(const WindowRef& window, CGSize size);

    /// Sends what is held; what was read counts as out of date.
    void endTurn();

private:
    struct AheadRequest {
        WindowRef window;
        /// The place alone where the rest is known.
        std::variant<FrameRequest, PlaceRequest> request;
        bool isLate = false;
        /// Whether a property has changed since, before or after it was answered.
        bool isOutdated = false;
    };
    struct HeldPosition {
        WindowRef window;
        CGPoint position;
    };
    enum class HeldState : std::uint8_t { none, maximized, fullscreen };
    /// A move under way, or, with an empty target, a change of state alone.
    struct Movement {
        WindowRef window;
        PixelRect start{};
        PixelRect target{};
        /// What the size was reckoned with.
        Extents decoration{};
        Extents shadow{};
        HeldState releasedFrom = HeldState::none;
        WindowManagerPeer::Checkpoint checkpoint = 0;
        std::chrono::steady_clock::time_point deadline;
    };

    std::optional<FrameReading> readArrived();
    void handle(const xcb_generic_event_t& event);
    void sendHeldPosition();
    void send(const WindowRef& window, const FrameReading& reading, PixelRect target);
    bool hasReadingOf(const WindowRef& window) const { return isReadingCurrent_ && readWindow_ == window; }
    PixelRect currentFrame(const WindowRef& window, const FrameReading& reading) const;
    AXError prepare(const WindowRef& window, bool FrameReading::*permission);
    void setStates(const Window& window, const FrameReading& states, std::uint32_t action);
    void leaveTile(const Window& window);
    std::optional<FrameReading> ask(const WindowRef& window);
    std::optional<FrameReading> takeAhead(const WindowRef& window);
    void remember(const WindowRef& window, const FrameReading& reading);
    std::optional<FrameReading> readAtEndOf(const Movement& movement);
    static bool hasEnded(const Movement& movement, const FrameReading& now, bool hasAnswered);

    Connection& connection_;
    const Atoms& atoms_;
    WindowManagerPeer& windowManager_;
    std::optional<AheadRequest> ahead_;
    std::optional<HeldPosition> held_;
    std::optional<Movement> movement_;
    /// The window read last, and whether that was in this turn and nothing was asked of it since.
    WindowRef readWindow_;
    FrameReading reading_;
    bool isReadingCurrent_ = false;
    /// Whether nothing but its place can have changed since: all else that a reading has is told when it changes.
    bool isReadingKnown_ = false;
    /// What that window was until now.
    HeldState releasedFrom_ = HeldState::none;
    /// The window whose changes are waited for, and whether there was one.
    xcb_window_t awaited_ = XCB_WINDOW_NONE;
    bool hasChanged_ = false;
    Connection::Subscription subscription_;
};

} // namespace brisk::x11
