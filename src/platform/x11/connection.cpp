#include "platform/x11/connection.h"

#include <poll.h>

#include <cstring>
#include <utility>

namespace brisk::x11 {

struct Connection::NamedAtom {
    const char* name;
    xcb_atom_t atom;
};

Connection::Subscription::Subscription(Connection& connection, std::list<EventHandler>::iterator handler)
    : connection_(&connection), handler_(handler) {}

Connection::Subscription::Subscription(Subscription&& other) noexcept
    : connection_(std::exchange(other.connection_, nullptr)), handler_(other.handler_) {}

Connection::Subscription& Connection::Subscription::operator=(Subscription&& other) noexcept {
    std::swap(connection_, other.connection_);
    std::swap(handler_, other.handler_);
    return *this;
}

Connection::Subscription::~Subscription() {
    if (connection_ != nullptr) {
        connection_->handlers_.erase(handler_);
    }
}

std::unique_ptr<Connection> Connection::open(const char* display) {
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(display, &screenNumber);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<Connection>(new Connection(connection, screenNumber));
}

Connection::Connection(xcb_connection_t* connection, int screenNumber)
    : connection_(connection), screenNumber_(screenNumber) {
    auto iterator = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber; ++i) {
        xcb_screen_next(&iterator);
    }
    screen_ = iterator.data;
}

Connection::~Connection() {
    xcb_disconnect(connection_);
}

int Connection::fileDescriptor() const {
    return xcb_get_file_descriptor(connection_);
}

bool Connection::isBroken() const {
    return xcb_connection_has_error(connection_) != 0;
}

bool Connection::has(xcb_extension_t& extension) const {
    const auto* data = xcb_get_extension_data(connection_, &extension);
    return data != nullptr && data->present != 0;
}

xcb_atom_t Connection::atom(const char* name) {
    for (const NamedAtom& known : atoms_) {
        if (known.name == name || std::strcmp(known.name, name) == 0) {
            return known.atom;
        }
    }
    const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection_, cookie, nullptr)};
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    atoms_.push_back({name, atom});
    return atom;
}

Connection::Subscription Connection::addEventHandler(EventHandler handler) {
    return {*this, handlers_.insert(handlers_.end(), std::move(handler))};
}

void Connection::dispatchEvents() {
    // Only what is not read yet makes this read the socket, and only once: who sends events without end must not keep
    // the main loop here.
    dispatchQueuedEvents();
    if (const Event event{xcb_poll_for_event(connection_)}) {
        dispatch(*event);
        dispatchQueuedEvents();
    }
    flush();
}

bool Connection::dispatchQueuedEvents() {
    bool wereThere = false;
    while (const Event event{xcb_poll_for_queued_event(connection_)}) {
        dispatch(*event);
        wereThere = true;
    }
    return wereThere;
}

bool Connection::flush() {
    for (bool hasRead = false;; hasRead = true) {
        xcb_flush(connection_);
        if (!dispatchQueuedEvents()) {
            return hasRead;
        }
    }
}

bool Connection::waitForEvents(std::chrono::steady_clock::time_point deadline) {
    using std::chrono::milliseconds;
    xcb_flush(connection_);
    for (;;) {
        if (const Event event{xcb_poll_for_event(connection_)}) {
            dispatch(*event);
            dispatchQueuedEvents();
            return std::chrono::steady_clock::now() < deadline;
        }
        const auto remaining = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
        if (remaining <= milliseconds::zero() || isBroken()) {
            return false;
        }
        pollfd descriptor{.fd = fileDescriptor(), .events = POLLIN, .revents = 0};
        // An interrupted wait is followed by another, for what remains of the time.
        poll(&descriptor, 1, static_cast<int>(remaining.count()));
    }
}

void Connection::dispatch(const xcb_generic_event_t& event) {
    for (auto handler = handlers_.begin(); handler != handlers_.end();) {
        // Stepped on before the call: a handler may withdraw itself.
        const auto& current = *handler++;
        current(event);
    }
}

} // namespace brisk::x11
