// The least that a hot key can cost: two grabs, and for each press one question (which window is active?) and one
// message to the window manager. What the whole road of the product is measured against.
//
// usage: minimal_daemon <x,y,width,height> <x,y,width,height>
// Ctrl+Alt+1 gives the active window the first frame, Ctrl+Alt+2 the second: corner of the frame, size of the client.

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

struct Free {
    void operator()(void* p) const { std::free(p); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

using Frame = std::array<std::uint32_t, 4>;

constexpr std::uint8_t digit1 = 10;
constexpr std::uint8_t digit2 = 11;

xcb_atom_t atom(xcb_connection_t* xcb, std::string_view name) {
    const auto cookie = xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(xcb, cookie, nullptr)};
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

bool parse(const char* text, Frame& frame) {
    return std::sscanf(text, "%u,%u,%u,%u", &frame[0], &frame[1], &frame[2], &frame[3]) == 4;
}

} // namespace

int main(int argc, char** argv) {
    std::array<Frame, 2> frames{};
    if (argc != 3 || !parse(argv[1], frames[0]) || !parse(argv[2], frames[1])) {
        return EXIT_FAILURE;
    }
    xcb_connection_t* xcb = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(xcb) != 0) {
        return EXIT_FAILURE;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    const xcb_atom_t activeWindow = atom(xcb, "_NET_ACTIVE_WINDOW");
    const xcb_atom_t moveResize = atom(xcb, "_NET_MOVERESIZE_WINDOW");
    for (const std::uint8_t key : {digit1, digit2}) {
        xcb_grab_key(xcb, 0, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, key, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_ASYNC);
    }
    xcb_flush(xcb);
    while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(xcb)}) {
        if (event->response_type != XCB_KEY_PRESS) {
            continue;
        }
        const auto key = reinterpret_cast<const xcb_key_press_event_t*>(event.get())->detail;
        const Frame& frame = frames[key == digit1 ? 0 : 1];
        const auto cookie = xcb_get_property(xcb, 0, root, activeWindow, XCB_ATOM_WINDOW, 0, 1);
        const Reply<xcb_get_property_reply_t> active{xcb_get_property_reply(xcb, cookie, nullptr)};
        if (!active || active->value_len != 1) {
            continue;
        }
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = *static_cast<const xcb_window_t*>(xcb_get_property_value(active.get()));
        message.type = moveResize;
        constexpr std::uint32_t allFourFromPager = 0x2F00;
        message.data.data32[0] = allFourFromPager | XCB_GRAVITY_NORTH_WEST;
        for (std::size_t i = 0; i < frame.size(); ++i) {
            message.data.data32[i + 1] = frame[i];
        }
        xcb_send_event(xcb, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(xcb);
    }
    xcb_disconnect(xcb);
    return EXIT_SUCCESS;
}
