#include "platform/x11/pointer_look.h"

#include <xcb/xcbext.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

namespace brisk::x11 {
namespace {

/// The system counter of that name. xcb's own iterator and accessor reckon with a padding between the length of a name
/// and the name, which the protocol does not have: they lose their way after some lengths.
std::optional<xcb_sync_counter_t> counterNamed(std::string_view name,
                                               const xcb_sync_list_system_counters_reply_t& counters) {
    constexpr std::size_t counterSize = 12;
    constexpr std::size_t headSize = counterSize + sizeof(std::uint16_t);
    const auto* const bytes = reinterpret_cast<const char*>(&counters + 1);
    const std::size_t size = std::size_t{counters.length} * 4;
    for (std::size_t start = 0; start + headSize <= size;) {
        std::uint16_t length = 0;
        std::memcpy(&length, bytes + start + counterSize, sizeof length);
        const std::size_t end = start + headSize + length;
        if (end <= size && std::string_view(bytes + start + headSize, length) == name) {
            xcb_sync_counter_t counter = 0;
            std::memcpy(&counter, bytes + start, sizeof counter);
            return counter;
        }
        start = (end + 3) / 4 * 4;
    }
    return std::nullopt;
}

/// The server's time in milliseconds, as a counter of the Synchronization Extension.
std::optional<xcb_sync_counter_t> serverTime(xcb_connection_t* xcb) {
    const auto initializeCookie = xcb_sync_initialize(xcb, XCB_SYNC_MAJOR_VERSION, XCB_SYNC_MINOR_VERSION);
    const auto countersCookie = xcb_sync_list_system_counters(xcb);
    const Reply<xcb_sync_initialize_reply_t> version{xcb_sync_initialize_reply(xcb, initializeCookie, nullptr)};
    const Reply<xcb_sync_list_system_counters_reply_t> counters{
        xcb_sync_list_system_counters_reply(xcb, countersCookie, nullptr)};
    return version && counters ? counterNamed("SERVERTIME", *counters) : std::nullopt;
}

} // namespace

std::unique_ptr<PointerLook> PointerLook::open(const char* display) {
    auto connection = Connection::open(display);
    if (!connection || !connection->has(xcb_sync_id)) {
        return nullptr;
    }
    const auto clock = serverTime(connection->xcb());
    return clock ? std::unique_ptr<PointerLook>(new PointerLook(std::move(connection), *clock)) : nullptr;
}

PointerLook::PointerLook(std::unique_ptr<Connection> connection, xcb_sync_counter_t clock)
    : connection_(std::move(connection)), clock_(clock) {}

void PointerLook::ask(std::chrono::milliseconds delay) {
    isWanted_ = true;
    if (asked_) {
        return;
    }
    xcb_connection_t* const xcb = connection_->xcb();
    // So late that no event is sent, which would come besides the answer.
    constexpr xcb_sync_int64_t never{.hi = std::numeric_limits<std::int32_t>::max(),
                                     .lo = std::numeric_limits<std::uint32_t>::max()};
    const xcb_sync_waitcondition_t condition{
        .trigger = {.counter = clock_,
                    .wait_type = XCB_SYNC_VALUETYPE_RELATIVE,
                    .wait_value = {.hi = 0, .lo = static_cast<std::uint32_t>(delay.count())},
                    .test_type = XCB_SYNC_TESTTYPE_POSITIVE_COMPARISON},
        .event_threshold = never};
    xcb_sync_await(xcb, 1, &condition);
    asked_ = xcb_query_pointer(xcb, connection_->root());
    xcb_flush(xcb);
}

std::optional<PointerReading> PointerLook::take() {
    // Reads what there is. No event is of interest; some are sent to everyone.
    connection_->dispatchEvents();
    void* reply = nullptr;
    if (!asked_ || xcb_poll_for_reply(connection_->xcb(), asked_->sequence, &reply, nullptr) == 0) {
        return std::nullopt;
    }
    asked_.reset();
    const Reply<xcb_query_pointer_reply_t> pointer{static_cast<xcb_query_pointer_reply_t*>(reply)};
    return pointer && isWanted_ ? std::optional(readingOf(*pointer)) : std::nullopt;
}

} // namespace brisk::x11
