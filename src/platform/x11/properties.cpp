#include "platform/x11/properties.h"

#include "platform/x11/connection.h"

namespace brisk::x11 {

namespace {

std::string utf8FromLatin1(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80U) {
            result.push_back(c);
        } else {
            result.push_back(static_cast<char>(0xC0U | (byte >> 6U)));
            result.push_back(static_cast<char>(0x80U | (byte & 0x3FU)));
        }
    }
    return result;
}

} // namespace

std::optional<std::vector<std::uint32_t>> wordsIn(const xcb_get_property_reply_t& property, xcb_atom_t type) {
    if (property.type != type || property.format != 32) {
        return std::nullopt;
    }
    const auto* words = static_cast<const std::uint32_t*>(xcb_get_property_value(&property));
    return std::vector<std::uint32_t>{words, words + property.value_len};
}

std::optional<std::string> textIn(const xcb_get_property_reply_t& property, xcb_atom_t utf8String) {
    if (property.format != 8 || (property.type != utf8String && property.type != XCB_ATOM_STRING)) {
        return std::nullopt;
    }
    std::string text{static_cast<const char*>(xcb_get_property_value(&property)), property.value_len};
    return property.type == utf8String ? text : utf8FromLatin1(text);
}

PropertyRequest::PropertyRequest(Connection& connection, xcb_window_t window, xcb_atom_t property,
                                 std::uint32_t maximumWords)
    : connection_(connection),
      cookie_(xcb_get_property(connection.xcb(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, maximumWords)) {}

std::optional<std::vector<std::uint32_t>> PropertyRequest::takeWords(xcb_atom_t type) const {
    const Reply<xcb_get_property_reply_t> reply{xcb_get_property_reply(connection_.xcb(), cookie_, nullptr)};
    return reply ? wordsIn(*reply, type) : std::nullopt;
}

std::optional<std::vector<std::uint32_t>> PropertyRequest::takeWords(xcb_atom_t type, std::size_t count) const {
    auto words = takeWords(type);
    if (!words || words->size() < count) {
        return std::nullopt;
    }
    words->resize(count);
    return words;
}

std::optional<std::string> PropertyRequest::takeText(xcb_atom_t utf8String) const {
    const Reply<xcb_get_property_reply_t> reply{xcb_get_property_reply(connection_.xcb(), cookie_, nullptr)};
    return reply ? textIn(*reply, utf8String) : std::nullopt;
}

} // namespace brisk::x11
