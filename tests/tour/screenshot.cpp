#include "tour/screenshot.h"

#include "desktop/support/wait.h"

#include <png.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace brisk::tour {
namespace {

using Image = desktop::Reply<xcb_get_image_reply_t>;

Image readScreen(desktop::DesktopConnection& connection, const desktop::PixelRect& part) {
    constexpr std::uint32_t allPlanes = ~0U;
    const auto cookie =
        xcb_get_image(connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(), static_cast<std::int16_t>(part.x),
                      static_cast<std::int16_t>(part.y), static_cast<std::uint16_t>(part.width),
                      static_cast<std::uint16_t>(part.height), allPlanes);
    Image image{xcb_get_image_reply(connection.xcb(), cookie, nullptr)};
    if (!image || image->depth != 24) {
        throw std::runtime_error("cannot read the screen");
    }
    return image;
}

bool areEqual(const Image& a, const Image& b) {
    const auto size = static_cast<std::size_t>(xcb_get_image_data_length(a.get()));
    return std::memcmp(xcb_get_image_data(a.get()), xcb_get_image_data(b.get()), size) == 0;
}

/// The screen once it has been the same for a while: clients draw some time after they were moved. One that never stops
/// drawing is taken as it is.
Image readSteadyScreen(desktop::DesktopConnection& connection, const desktop::PixelRect& part) {
    using Clock = std::chrono::steady_clock;
    Image image = readScreen(connection, part);
    auto unchangedSince = Clock::now();
    static_cast<void>(desktop::waitUntil(
        [&] {
            Image next = readScreen(connection, part);
            if (!areEqual(image, next)) {
                unchangedSince = Clock::now();
            }
            image = std::move(next);
            return Clock::now() - unchangedSince >= std::chrono::milliseconds(200);
        },
        std::chrono::seconds(2)));
    return image;
}

} // namespace

void writeScreenshot(desktop::DesktopConnection& connection, const desktop::PixelRect& part, const std::string& path) {
    const Image screen = readSteadyScreen(connection, part);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(part.width);
    image.height = static_cast<png_uint_32>(part.height);
    // The server's pixels are 32-bit words, blue lowest, the top byte of no meaning; libpng reads that byte as alpha.
    image.format = PNG_FORMAT_BGRA;
    std::uint8_t* pixels = xcb_get_image_data(screen.get());
    const int size = xcb_get_image_data_length(screen.get());
    for (int i = 3; i < size; i += 4) {
        pixels[i] = 0xFF;
    }
    // A screen is drawn in seconds and looked at once: quick compression will do.
    image.flags = PNG_IMAGE_FLAG_FAST;
    if (png_image_write_to_file(&image, path.c_str(), 0, pixels, 0, nullptr) == 0) {
        throw std::runtime_error("cannot write " + path + ": " + image.message);
    }
}

} // namespace brisk::tour
