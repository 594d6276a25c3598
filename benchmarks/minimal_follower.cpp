// What following a dragged window costs the plain way: raw motion and, at most every 8 ms, one question where the
// pointer and the window are. What the product's processor time during a drag is measured against.
//
// usage: minimal_follower <window>

#include <poll.h>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

struct Free {
    void operator()(void* p) const { std::free(p); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;
using Clock = std::chrono::steady_clock;

void selectRawMotion(xcb_connection_t* xcb, xcb_window_t root) {
    const Reply<xcb_input_xi_query_version_reply_t> version{
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 1), nullptr)};
    struct {
        xcb_input_event_mask_t head{.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1};
        std::uint32_t mask = XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    } request;
    xcb_input_xi_select_events(xcb, root, 1, &request.head);
    xcb_flush(xcb);
}

void ask(xcb_connection_t* xcb, xcb_window_t root, xcb_window_t window) {
    const auto pointerCookie = xcb_query_pointer(xcb, root);
    const auto placeCookie = xcb_translate_coordinates(xcb, window, root, 0, 0);
    const Reply<xcb_query_pointer_reply_t> pointer{xcb_query_pointer_reply(xcb, pointerCookie, nullptr)};
    const Reply<xcb_translate_coordinates_reply_t> place{xcb_translate_coordinates_reply(xcb, placeCookie, nullptr)};
}

} // namespace

int main(int argc, char** argv) {
    xcb_connection_t* const xcb = xcb_connect(nullptr, nullptr);
    if (argc != 2 || xcb_connection_has_error(xcb) != 0) {
        return EXIT_FAILURE;
    }
    const auto window = static_cast<xcb_window_t>(std::strtoul(argv[1], nullptr, 10));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    selectRawMotion(xcb, root);

    constexpr std::chrono::milliseconds interval(8);
    auto next = Clock::now();
    bool hasMoved = false;
    pollfd events{.fd = xcb_get_file_descriptor(xcb), .events = POLLIN, .revents = 0};
    while (xcb_connection_has_error(xcb) == 0) {
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()).count();
        poll(&events, 1, hasMoved ? static_cast<int>(std::max<std::int64_t>(wait, 0)) : -1);
        while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(xcb)}) {
            hasMoved = true;
        }
        if (hasMoved && Clock::now() >= next) {
            hasMoved = false;
            next = Clock::now() + interval;
            ask(xcb, root, window);
        }
    }
    return EXIT_SUCCESS;
}
