#include "tour/screenshot.h"

#include <png.h>

#include <cstdint>
#include <stdexcept>

namespace brisk::tour {

void writeScreenshot(desktop::DesktopConnection& connection, const std::string& path) {
    const xcb_screen_t& screen = connection.screen();
    constexpr std::uint32_t allPlanes = ~0U;
    const auto cookie = xcb_get_image(connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(), 0, 0,
                                      screen.width_in_pixels, screen.height_in_pixels, allPlanes);
    const desktop::Reply<xcb_get_image_reply_t> reply{xcb_get_image_reply(connection.xcb(), cookie, nullptr)};
    if (!reply || reply->depth != 24) {
        throw std::runtime_error("cannot read the screen");
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = screen.width_in_pixels;
    image.height = screen.height_in_pixels;
    // The server's pixels are 32-bit words, blue lowest, the top byte of no meaning; libpng reads that byte as alpha.
    image.format = PNG_FORMAT_BGRA;
    std::uint8_t* pixels = xcb_get_image_data(reply.get());
    const int size = xcb_get_image_data_length(reply.get());
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
