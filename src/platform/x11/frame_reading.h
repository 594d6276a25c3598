#pragma once

#include "platform/x11/atoms.h"
#include "platform/x11/connection.h"
#include "platform/x11/pixel_rect.h"
#include "platform/x11/properties.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace brisk::x11 {

/// Widths of what lies around a rectangle.
struct Extents {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
    friend bool operator==(const Extents&, const Extents&) = default;
};

/// What a property of extents says (left, right, top, bottom): none where a number is missing or beyond belief.
Extents extentsIn(const std::optional<std::vector<std::uint32_t>>& words);

/// What of a shadow the client's rectangle can have inside itself: all of it, or it is not believed at all.
Extents believableShadow(const Extents& shadow, const PixelRect& client);

/// The visible outer frame of a client's rectangle.
PixelRect frameAround(const PixelRect& client, const Extents& decoration, const Extents& shadow);

/// The client's rectangle of a visible outer frame.
PixelRect clientIn(const PixelRect& frame, const Extents& decoration, const Extents& shadow);

/// A window's place and what it bears on moving it, all from one moment.
struct FrameReading {
    /// The visible outer frame: title bar and borders included, the invisible shadows that a client draws around itself
    /// not.
    PixelRect frame;
    /// The window manager's decoration around the client's rectangle.
    Extents decoration;
    /// The client's own shadows, inside its rectangle.
    Extents shadow;
    bool isMaximizedVertically = false;
    bool isMaximizedHorizontally = false;
    bool isFullscreen = false;
    /// What the window manager lets be done, as long as no state above holds the window in place.
    bool mayMove = true;
    bool mayResize = true;

    /// Whether a state holds the window in place, so that moves are ignored.
    bool isHeld() const { return isMaximizedVertically || isMaximizedHorizontally || isFullscreen; }
};

/// Whether a reading may be another once that property of the window has changed.
bool isReadFrom(xcb_atom_t property, const Atoms& atoms);

/// Where the client's rectangle is in the root window, asked for: one round trip. Take the answer once.
class PlaceRequest {
public:
    PlaceRequest(Connection& connection, xcb_window_t window);
    /// None when the window is gone.
    std::optional<PixelRect> take() const;
    /// A reading that is still true but for the frame, with the frame where it is now; none when the window is gone.
    std::optional<FrameReading> take(const FrameReading& known) const;

private:
    Connection& connection_;
    xcb_translate_coordinates_cookie_t position_;
    xcb_get_geometry_cookie_t geometry_;
};

/// All that a reading needs, asked at once: one round trip. Take the answer once.
class FrameRequest {
public:
    FrameRequest(Connection& connection, const Atoms& atoms, xcb_window_t window);
    /// None when the window is gone.
    std::optional<FrameReading> take() const;

private:
    const Atoms& atoms_;
    PlaceRequest place_;
    PropertyRequest decoration_;
    PropertyRequest shadow_;
    PropertyRequest state_;
    PropertyRequest allowedActions_;
};

} // namespace brisk::x11
