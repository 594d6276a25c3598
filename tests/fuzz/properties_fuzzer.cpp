// What other clients write on their windows and other programs into their desktop entries.

#include "platform/freedesktop/desktop_entry.h"
#include "platform/x11/frame_reading.h"
#include "platform/x11/properties.h"
#include "platform/x11/strut.h"
#include "platform/x11/window_description.h"
#include "promise.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace brisk::x11 {
namespace {

constexpr xcb_atom_t utf8String = 300;

/// A property as the server delivers it: type, format and value are the client's choice, the length is the server's.
class Property {
public:
    explicit Property(FuzzedDataProvider& data) {
        constexpr std::array<xcb_atom_t, 4> types{XCB_ATOM_CARDINAL, XCB_ATOM_STRING, utf8String, XCB_ATOM_ATOM};
        constexpr std::array<std::uint8_t, 3> formats{8, 16, 32};
        xcb_get_property_reply_t reply{};
        reply.type = data.PickValueInArray(types);
        reply.format = data.PickValueInArray(formats);
        const std::string value = data.ConsumeRandomLengthString(4096);
        reply.value_len = static_cast<std::uint32_t>(value.size() / (reply.format / 8U));
        // Not a byte more than the server sends, so that a look beyond it is seen.
        const std::size_t size = reply.value_len * (reply.format / 8U);
        bytes_.reset(static_cast<char*>(std::malloc(sizeof reply + size)));
        std::memcpy(bytes_.get(), &reply, sizeof reply);
        std::memcpy(bytes_.get() + sizeof reply, value.data(), size);
    }

    const xcb_get_property_reply_t& reply() const {
        return *reinterpret_cast<const xcb_get_property_reply_t*>(bytes_.get());
    }

private:
    Reply<char> bytes_;
};

void checkText(const Property& property) {
    const auto text = textIn(property.reply(), utf8String);
    if (!text) {
        return;
    }
    if (property.reply().type == XCB_ATOM_STRING) {
        nlohmann::json(*text).dump(); // throws where it is not UTF-8
    }
    const std::string windowClass = classIn(*text);
    promise(windowClass.find('\0') == std::string::npos && text->find(windowClass) != std::string::npos,
            "a class is one of the property's strings");
}

bool isIn(const PixelRect& inner, const PixelRect& outer) {
    return inner.width > 0 && inner.height > 0 && inner.x >= outer.x && inner.y >= outer.y &&
           inner.maxX() <= outer.maxX() && inner.maxY() <= outer.maxY();
}

/// Windows have 16-bit places and sizes and are one pixel large at least; so have monitors.
PixelRect rectangle(FuzzedDataProvider& data) {
    return {.x = data.ConsumeIntegral<std::int16_t>(),
            .y = data.ConsumeIntegral<std::int16_t>(),
            .width = data.ConsumeIntegralInRange(1, 0xFFFF),
            .height = data.ConsumeIntegralInRange(1, 0xFFFF)};
}

void checkFrame(FuzzedDataProvider& data, const Property& first, const Property& second) {
    const PixelRect client = rectangle(data);
    const Extents decoration = extentsIn(wordsIn(first.reply(), XCB_ATOM_CARDINAL));
    const Extents shadow = believableShadow(extentsIn(wordsIn(second.reply(), XCB_ATOM_CARDINAL)), client);
    const PixelRect visible = frameAround(client, {}, shadow);
    promise(isIn(visible, client), "a shadow lies in its window");
    promise(isIn(visible, frameAround(client, decoration, shadow)), "a decoration lies around its window");
}

void checkStrut(FuzzedDataProvider& data, const Property& first, const Property& second) {
    const auto strut = strutIn(wordsIn(first.reply(), XCB_ATOM_CARDINAL), wordsIn(second.reply(), XCB_ATOM_CARDINAL));
    const PixelRect root{.width = data.ConsumeIntegralInRange(1, 0xFFFF),
                         .height = data.ConsumeIntegralInRange(1, 0xFFFF)};
    const PixelRect monitor = rectangle(data);
    if (strut) {
        promise(isIn(areaBeside(*strut, monitor, root), monitor), "what a strut leaves of a monitor is part of it");
    }
}

void checkDesktopEntry(const std::string& text) {
    for (const auto& [key, value] : freedesktop::parseDesktopEntry(text)) {
        promise(key.find_first_of("=\n") == std::string::npos, "a key is a key");
    }
    const auto written = freedesktop::parseDesktopEntry("[Desktop Entry]\nName=" + freedesktop::escapedString(text) +
                                                        "\nExec=" + freedesktop::execValue(text) + "\n");
    promise(written.at("Name") == text, "a text comes back as it was written");
    promise(written.contains("Exec") && written.size() == 2, "no text breaks out of its line");
}

} // namespace
} // namespace brisk::x11

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    const brisk::x11::Property first(data);
    const brisk::x11::Property second(data);
    brisk::x11::checkText(first);
    brisk::x11::checkFrame(data, first, second);
    brisk::x11::checkStrut(data, first, second);
    brisk::x11::checkDesktopEntry(data.ConsumeRemainingBytesAsString());
    return 0;
}
