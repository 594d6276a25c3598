#include "platform/x11/raw_input.h"

#include "platform/x11/events.h"
#include "platform/x11/xkb.h"

#include <xcb/xinput.h>

#include <utility>

namespace brisk::x11 {
namespace {

/// Buttons from here on are the wheel's.
constexpr std::uint32_t firstWheelButton = 4;

} // namespace

/// Raw events that also come while another client has grabbed the pointer need version 2.1 of the input extension;
/// which modifiers were held at a release only the keyboard extension tells in time.
bool RawInput::isAvailable() {
    xcb_connection_t* const xcb = connection_.xcb();
    xcb_prefetch_extension_data(xcb, &xcb_input_id);
    xcb_prefetch_extension_data(xcb, &xcb_xkb_id);
    const auto* const input = xcb_get_extension_data(xcb, &xcb_input_id);
    const auto* const xkb = xcb_get_extension_data(xcb, &xcb_xkb_id);
    if (input == nullptr || input->present == 0 || xkb == nullptr || xkb->present == 0) {
        return false;
    }
    const auto versionCookie = xcb_input_xi_query_version(xcb, 2, 2);
    const auto xkbCookie = xcb_xkb_use_extension(xcb, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const Reply<xcb_input_xi_query_version_reply_t> version{
        xcb_input_xi_query_version_reply(xcb, versionCookie, nullptr)};
    const Reply<xcb_xkb_use_extension_reply_t> xkbUse{xcb_xkb_use_extension_reply(xcb, xkbCookie, nullptr)};
    if (!version || std::pair<int, int>(version->major_version, version->minor_version) < std::pair(2, 1) || !xkbUse ||
        xkbUse->supported == 0) {
        return false;
    }
    inputExtension_ = input->major_opcode;
    xkbEvent_ = xkb->first_event;
    return true;
}

void RawInput::select(Selection selection) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } request{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1}, .mask = 0};
    if (selection != Selection::nothing) {
        request.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;
    }
    if (selection == Selection::everything) {
        request.mask |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    }
    xcb_input_xi_select_events(connection_.xcb(), connection_.root(), 1, &request.head);

    const bool withModifiers = selection == Selection::buttonsAndModifiers || selection == Selection::everything;
    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_STATE;
    details.stateDetails = withModifiers ? XCB_XKB_STATE_PART_MODIFIER_STATE : 0;
    xcb_xkb_select_events_aux(connection_.xcb(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0,
                              &details);
}

std::optional<RawInput::Event> RawInput::eventIn(const xcb_generic_event_t& event) const {
    const std::uint8_t type = typeOf(event);
    if (type == XCB_GE_GENERIC) {
        return inputEventIn(event);
    }
    if (type == xkbEvent_ && event.pad0 == XCB_XKB_STATE_NOTIFY) {
        return Event{.kind = Event::Kind::modifiers, .detail = as<xcb_xkb_state_notify_event_t>(event).mods};
    }
    return std::nullopt;
}

std::optional<RawInput::Event> RawInput::inputEventIn(const xcb_generic_event_t& event) const {
    const auto& input = as<xcb_ge_generic_event_t>(event);
    if (input.extension != inputExtension_) {
        return std::nullopt;
    }
    if (input.event_type == XCB_INPUT_RAW_MOTION) {
        return Event{.kind = Event::Kind::motion};
    }
    const bool isPress = input.event_type == XCB_INPUT_RAW_BUTTON_PRESS;
    const std::uint32_t button = as<xcb_input_raw_button_press_event_t>(event).detail;
    if ((!isPress && input.event_type != XCB_INPUT_RAW_BUTTON_RELEASE) || button >= firstWheelButton) {
        return std::nullopt;
    }
    return Event{.kind = isPress ? Event::Kind::press : Event::Kind::release, .detail = button};
}

} // namespace brisk::x11
