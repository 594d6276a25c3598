#include "platform/x11/single_instance.h"

#include "platform/x11/events.h"

#include <array>
#include <cstring>
#include <string>
#include <utility>

namespace brisk::x11 {

namespace {

xcb_atom_t selectionOfScreen(const Connection& connection) {
    const std::string name = "_BRISK_INSTANCE_S" + std::to_string(connection.screenNumber());
    const auto cookie = xcb_intern_atom(connection.xcb(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection.xcb(), cookie, nullptr)};
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

SingleInstance::SingleInstance(Connection& connection, MainQueue& queue, std::chrono::milliseconds answerDeadline)
    : connection_(connection),
      queue_(queue),
      answerDeadline_(answerDeadline),
      ownWindow_(xcb_generate_id(connection.xcb())),
      selection_(selectionOfScreen(connection)),
      startedAgain_(connection.atom("_BRISK_STARTED_AGAIN")),
      subscription_(connection.addEventHandler([this](const auto& event) { handle(event); })) {
    xcb_create_window(connection.xcb(), XCB_COPY_FROM_PARENT, ownWindow_, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
}

SingleInstance::~SingleInstance() {
    // The selection goes with its owner.
    xcb_destroy_window(connection_.xcb(), ownWindow_);
    xcb_flush(connection_.xcb());
}

SingleInstance::Start SingleInstance::start(std::function<void()> onStartedAgain) {
    onStartedAgain_ = std::make_shared<std::function<void()>>(std::move(onStartedAgain));
    const auto deadline = std::chrono::steady_clock::now() + answerDeadline_;
    do {
        const xcb_window_t owner = claim();
        if (owner == ownWindow_) {
            return Start::alone;
        }
        if (ask(owner, deadline)) {
            return Start::handedOver;
        }
    } while (std::chrono::steady_clock::now() < deadline && !connection_.isBroken());
    return Start::noAnswer;
}

xcb_window_t SingleInstance::claim() {
    xcb_connection_t* const xcb = connection_.xcb();
    // Between the look and the claim nobody else may claim: of two copies started at once both would go on.
    xcb_grab_server(xcb);
    const auto cookie = xcb_get_selection_owner(xcb, selection_);
    const Reply<xcb_get_selection_owner_reply_t> reply{xcb_get_selection_owner_reply(xcb, cookie, nullptr)};
    xcb_window_t owner = reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    if (reply && owner == XCB_WINDOW_NONE) {
        xcb_set_selection_owner(xcb, ownWindow_, selection_, XCB_CURRENT_TIME);
        owner = ownWindow_;
    }
    xcb_ungrab_server(xcb);
    xcb_flush(xcb);
    return owner;
}

bool SingleInstance::ask(xcb_window_t owner, std::chrono::steady_clock::time_point deadline) {
    xcb_connection_t* const xcb = connection_.xcb();
    asked_ = owner;
    hasAnswered_ = false;
    isGone_ = false;
    const std::uint32_t eventMask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const auto cookie = xcb_change_window_attributes_checked(xcb, owner, XCB_CW_EVENT_MASK, &eventMask);
    if (const Reply<xcb_generic_error_t> error{xcb_request_check(xcb, cookie)}) {
        return false;
    }
    xcb_convert_selection(xcb, ownWindow_, selection_, startedAgain_, startedAgain_, XCB_CURRENT_TIME);
    // A refusal says that the owner has gone, or is none of ours: either way its going is what is waited for.
    while (!hasAnswered_ && !isGone_ && connection_.waitForEvents(deadline)) {
    }
    return hasAnswered_;
}

void SingleInstance::handle(const xcb_generic_event_t& event) {
    switch (typeOf(event)) {
    case XCB_SELECTION_REQUEST: {
        const auto& request = as<xcb_selection_request_event_t>(event);
        if (request.owner == ownWindow_ && request.selection == selection_) {
            answer(request);
        }
        break;
    }
    case XCB_SELECTION_NOTIFY: {
        const auto& notify = as<xcb_selection_notify_event_t>(event);
        hasAnswered_ = hasAnswered_ || (notify.requestor == ownWindow_ && notify.property == startedAgain_);
        break;
    }
    case XCB_DESTROY_NOTIFY:
        isGone_ = isGone_ || as<xcb_destroy_notify_event_t>(event).window == asked_;
        break;
    default:
        break;
    }
}

void SingleInstance::answer(const xcb_selection_request_event_t& request) {
    const bool isUnderstood = request.target == startedAgain_ && request.property != XCB_ATOM_NONE;
    if (isUnderstood) {
        xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            connection_.atom("NULL"), 8, 0, nullptr);
        queue_.async([weak = std::weak_ptr(onStartedAgain_)] {
            if (const auto onStartedAgain = weak.lock()) {
                (*onStartedAgain)();
            }
        });
    }
    const xcb_selection_notify_event_t notify{
        .response_type = XCB_SELECTION_NOTIFY,
        .time = request.time,
        .requestor = request.requestor,
        .selection = request.selection,
        .target = request.target,
        .property = isUnderstood ? request.property : xcb_atom_t{XCB_ATOM_NONE},
    };
    // Every event is 32 bytes on the wire, this one's own are fewer.
    std::array<char, 32> message{};
    std::memcpy(message.data(), &notify, sizeof notify);
    xcb_send_event(connection_.xcb(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.data());
    xcb_flush(connection_.xcb());
}

} // namespace brisk::x11
