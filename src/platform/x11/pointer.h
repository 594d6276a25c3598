#pragma once

#include "platform/x11/atoms.h"
#include "platform/x11/connection.h"

#include <cstdint>
#include <optional>

namespace brisk::x11 {

/// The pointer at one moment.
struct PointerReading {
    int rootX = 0;
    int rootY = 0;
    /// Modifiers and logical buttons, as `xcb_key_but_mask_t`.
    std::uint16_t state = 0;
    /// The child of the root window under the pointer: a window manager's frame or a window without one; none over the
    /// bare root. Windows that let input through are not under the pointer.
    xcb_window_t topLevel = XCB_WINDOW_NONE;
};
PointerReading readingOf(const xcb_query_pointer_reply_t& reply);
/// One round trip; none when the server does not answer.
std::optional<PointerReading> readPointer(Connection& connection);

/// What a press has hit.
struct PressReading {
    PointerReading pointer;
    /// Whether the top-level window is, or frames, a window of this process, made on whichever of its connections.
    bool isOwn = false;
    /// Whether the active window is the one under the pointer.
    bool isActive = false;
};
/// One round trip, and a few where there are windows to compare.
std::optional<PressReading> readPress(Connection& connection, const Atoms& atoms);

/// Whether the active window is, or lies in, that child of the root window.
bool isActiveWindowIn(Connection& connection, const Atoms& atoms, xcb_window_t topLevel);

} // namespace brisk::x11
