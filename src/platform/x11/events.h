#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace brisk::x11 {

/// An event's number, whoever sent it.
inline std::uint8_t typeOf(const xcb_generic_event_t& event) {
    return event.response_type & 0x7FU;
}

/// The event as what its number says it is.
template <class T>
const T& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const T&>(event);
}

/// What is selected on every window that is followed, the root included. The same everywhere, since one client has one
/// selection a window: properties may name any window, and no two of ours may undo each other's.
inline constexpr std::uint32_t followedEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

inline void follow(xcb_connection_t* connection, xcb_window_t window) {
    const std::uint32_t eventMask = followedEvents;
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &eventMask);
}

} // namespace brisk::x11
