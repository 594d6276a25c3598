#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brisk::x11 {

class Connection;

/// The values of a property of that type in 32-bit units; none where type or format is another.
std::optional<std::vector<std::uint32_t>> wordsIn(const xcb_get_property_reply_t& property, xcb_atom_t type);
/// The bytes of a property of text, UTF8_STRING or STRING (Latin-1, made UTF-8); none where type or format is another.
/// What is said to be UTF-8 may be anything.
std::optional<std::string> textIn(const xcb_get_property_reply_t& property, xcb_atom_t utf8String);

/// A window property asked for and not waited for yet: ask for everything a decision needs first, then take the
/// answers, and it costs one round trip. What a property holds is any client's to choose: type, format and length are
/// checked, and whatever does not fit counts as absent. Each request is to be taken once.
class PropertyRequest {
public:
    /// Asks for at most `maximumWords` times four bytes of the property.
    PropertyRequest(Connection& connection, xcb_window_t window, xcb_atom_t property, std::uint32_t maximumWords);

    /// `wordsIn` the property; none if the window or the property does not exist.
    std::optional<std::vector<std::uint32_t>> takeWords(xcb_atom_t type) const;
    /// The same where there must be at least `count` of them; what follows is left out.
    std::optional<std::vector<std::uint32_t>> takeWords(xcb_atom_t type, std::size_t count) const;
    /// `textIn` the property, cut after the first `maximumWords` times four bytes.
    std::optional<std::string> takeText(xcb_atom_t utf8String) const;

private:
    Connection& connection_;
    xcb_get_property_cookie_t cookie_;
};

} // namespace brisk::x11
