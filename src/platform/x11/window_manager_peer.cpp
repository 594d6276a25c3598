#include "platform/x11/window_manager_peer.h"

#include "platform/x11/events.h"
#include "platform/x11/properties.h"

#include <algorithm>

namespace brisk::x11 {

WindowManagerPeer::WindowManagerPeer(Connection& connection, const Atoms& atoms)
    : connection_(connection),
      atoms_(atoms),
      ownWindow_(xcb_generate_id(connection.xcb())),
      subscription_(connection.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); })) {
    const std::uint32_t eventMask = followedEvents;
    xcb_create_window(connection_.xcb(), XCB_COPY_FROM_PARENT, ownWindow_, connection_.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &eventMask);
}

WindowManagerPeer::~WindowManagerPeer() {
    xcb_destroy_window(connection_.xcb(), ownWindow_);
}

bool WindowManagerPeer::isPresent() {
    update();
    return isPresent_;
}

bool WindowManagerPeer::placesWindows() {
    update();
    return placesWindows_;
}

void WindowManagerPeer::send(xcb_window_t window, xcb_atom_t message, const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = message;
    std::copy(data.begin(), data.end(), event.data.data32);
    xcb_send_event(connection_.xcb(), 0, connection_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
}

WindowManagerPeer::Checkpoint WindowManagerPeer::requestCheckpoint() {
    send(ownWindow_, atoms_.netRequestFrameExtents, {});
    return ++questions_;
}

void WindowManagerPeer::handle(const xcb_generic_event_t& event) {
    if (typeOf(event) == XCB_PROPERTY_NOTIFY) {
        const auto& notify = as<xcb_property_notify_event_t>(event);
        if (notify.window == ownWindow_ && notify.atom == atoms_.netFrameExtents) {
            // Whoever takes them away has not answered. An answer that is left over from its predecessor's time is not
            // one to a question that is yet to come.
            if (notify.state == XCB_PROPERTY_NEW_VALUE) {
                answers_ = std::min(answers_ + 1, questions_);
            }
        } else if (notify.atom == atoms_.netSupportingWindowManagerCheck || notify.atom == atoms_.netSupported) {
            isStale_ = isStale_ || notify.window == connection_.root() || notify.window == checkWindow_;
        }
    } else if (typeOf(event) == XCB_DESTROY_NOTIFY) {
        isStale_ = isStale_ || as<xcb_destroy_notify_event_t>(event).window == checkWindow_;
    }
}

void WindowManagerPeer::update() {
    if (!isStale_) {
        return;
    }
    isStale_ = false;
    checkWindow_ = XCB_WINDOW_NONE;
    isPresent_ = false;
    placesWindows_ = false;
    // What a new one owes nobody: its predecessor's unanswered questions.
    answers_ = questions_;

    const PropertyRequest checkRequest{connection_, connection_.root(), atoms_.netSupportingWindowManagerCheck, 1};
    const PropertyRequest supportedRequest{connection_, connection_.root(), atoms_.netSupported, 1024};
    const auto check = checkRequest.takeWords(XCB_ATOM_WINDOW, 1);
    const auto supported = supportedRequest.takeWords(XCB_ATOM_ATOM);
    if (check) {
        // The property outlives a window manager that crashed; its window does not, and names itself as proof.
        const xcb_window_t window = check->front();
        follow(connection_.xcb(), window);
        const PropertyRequest proofRequest{connection_, window, atoms_.netSupportingWindowManagerCheck, 1};
        const auto proof = proofRequest.takeWords(XCB_ATOM_WINDOW, 1);
        checkWindow_ = window;
        isPresent_ = proof && proof->front() == window;
        placesWindows_ =
            isPresent_ && supported &&
            std::find(supported->begin(), supported->end(), atoms_.netMoveResizeWindow) != supported->end();
    }
    connection_.dispatchQueuedEvents();
}

} // namespace brisk::x11
