#include "platform/x11/frame_reading.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace brisk::x11 {

namespace {

constexpr std::uint32_t maximumAtoms = 128;
/// Wider than any decoration or shadow. What claims more is broken or hostile, and is taken for none.
constexpr std::uint32_t maximumExtent = 1024;

bool contains(const std::vector<std::uint32_t>& atoms, xcb_atom_t atom) {
    return std::find(atoms.begin(), atoms.end(), atom) != atoms.end();
}

} // namespace

Extents extentsIn(const std::optional<std::vector<std::uint32_t>>& words) {
    if (!words || words->size() < 4 || *std::max_element(words->begin(), words->begin() + 4) > maximumExtent) {
        return {};
    }
    const auto pixels = [&](std::size_t index) { return static_cast<int>((*words)[index]); };
    return {.left = pixels(0), .right = pixels(1), .top = pixels(2), .bottom = pixels(3)};
}

Extents believableShadow(const Extents& shadow, const PixelRect& client) {
    const bool fits = shadow.left + shadow.right < client.width && shadow.top + shadow.bottom < client.height;
    return fits ? shadow : Extents{};
}

PixelRect frameAround(const PixelRect& client, const Extents& decoration, const Extents& shadow) {
    return {.x = client.x - decoration.left + shadow.left,
            .y = client.y - decoration.top + shadow.top,
            .width = client.width + decoration.left + decoration.right - shadow.left - shadow.right,
            .height = client.height + decoration.top + decoration.bottom - shadow.top - shadow.bottom};
}

PixelRect clientIn(const PixelRect& frame, const Extents& decoration, const Extents& shadow) {
    return {.x = frame.x + decoration.left - shadow.left,
            .y = frame.y + decoration.top - shadow.top,
            .width = frame.width - decoration.left - decoration.right + shadow.left + shadow.right,
            .height = frame.height - decoration.top - decoration.bottom + shadow.top + shadow.bottom};
}

bool isReadFrom(xcb_atom_t property, const Atoms& atoms) {
    return property == atoms.netFrameExtents || property == atoms.gtkFrameExtents || property == atoms.netWindowState ||
           property == atoms.netAllowedActions;
}

PlaceRequest::PlaceRequest(Connection& connection, xcb_window_t window)
    : connection_(connection),
      position_(xcb_translate_coordinates(connection.xcb(), window, connection.root(), 0, 0)),
      geometry_(xcb_get_geometry(connection.xcb(), window)) {}

std::optional<PixelRect> PlaceRequest::take() const {
    const Reply<xcb_translate_coordinates_reply_t> position{
        xcb_translate_coordinates_reply(connection_.xcb(), position_, nullptr)};
    const Reply<xcb_get_geometry_reply_t> geometry{xcb_get_geometry_reply(connection_.xcb(), geometry_, nullptr)};
    if (!position || !geometry) {
        return std::nullopt;
    }
    return PixelRect{.x = position->dst_x, .y = position->dst_y, .width = geometry->width, .height = geometry->height};
}

std::optional<FrameReading> PlaceRequest::take(const FrameReading& known) const {
    const auto client = take();
    if (!client) {
        return std::nullopt;
    }
    FrameReading reading = known;
    reading.frame = frameAround(*client, known.decoration, known.shadow);
    return reading;
}

FrameRequest::FrameRequest(Connection& connection, const Atoms& atoms, xcb_window_t window)
    : atoms_(atoms),
      place_(connection, window),
      decoration_(connection, window, atoms.netFrameExtents, 4),
      shadow_(connection, window, atoms.gtkFrameExtents, 4),
      state_(connection, window, atoms.netWindowState, maximumAtoms),
      allowedActions_(connection, window, atoms.netAllowedActions, maximumAtoms) {}

std::optional<FrameReading> FrameRequest::take() const {
    const auto client = place_.take();
    const auto decoration = decoration_.takeWords(XCB_ATOM_CARDINAL);
    const auto shadow = shadow_.takeWords(XCB_ATOM_CARDINAL);
    const auto state = state_.takeWords(XCB_ATOM_ATOM).value_or(std::vector<std::uint32_t>{});
    const auto allowedActions = allowedActions_.takeWords(XCB_ATOM_ATOM);
    if (!client) {
        return std::nullopt;
    }
    FrameReading reading{.decoration = extentsIn(decoration), .shadow = believableShadow(extentsIn(shadow), *client)};
    reading.frame = frameAround(*client, reading.decoration, reading.shadow);
    reading.isMaximizedVertically = contains(state, atoms_.netWindowStateMaximizedVertically);
    reading.isMaximizedHorizontally = contains(state, atoms_.netWindowStateMaximizedHorizontally);
    reading.isFullscreen = contains(state, atoms_.netWindowStateFullscreen);
    reading.mayMove = !allowedActions || contains(*allowedActions, atoms_.netActionMove);
    reading.mayResize = !allowedActions || contains(*allowedActions, atoms_.netActionResize);
    return reading;
}

} // namespace brisk::x11
