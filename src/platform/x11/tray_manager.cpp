#include "platform/x11/tray_manager.h"

#include "platform/x11/events.h"

#include <string>

namespace brisk::x11 {

namespace {

/// The selection is named after the screen, so the connection cannot remember the atom under a literal.
xcb_atom_t traySelection(Connection& connection) {
    const std::string name = "_NET_SYSTEM_TRAY_S" + std::to_string(connection.screenNumber());
    const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(
        connection.xcb(), xcb_intern_atom(connection.xcb(), 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr)};
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

TrayManager::TrayManager(Connection& connection)
    : connection_(connection),
      selection_(traySelection(connection)),
      subscription_(connection.addEventHandler([this](const xcb_generic_event_t& event) { handle(event); })) {}

bool TrayManager::isPresent() const {
    const Reply<xcb_get_selection_owner_reply_t> reply{xcb_get_selection_owner_reply(
        connection_.xcb(), xcb_get_selection_owner(connection_.xcb(), selection_), nullptr)};
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void TrayManager::handle(const xcb_generic_event_t& event) {
    if (typeOf(event) != XCB_CLIENT_MESSAGE) {
        return;
    }
    // The announcement that ICCCM asks of a new owner of a manager selection: its time, the selection, the owner.
    const auto& message = as<xcb_client_message_event_t>(event);
    if (message.type == connection_.atom("MANAGER") && message.data.data32[1] == selection_ && onAppeared_) {
        onAppeared_();
    }
}

} // namespace brisk::x11
